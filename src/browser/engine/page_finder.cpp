#include "browser/engine/page_finder.h"

#include <QWebEngineFindTextResult>
#include <QWebEnginePage>

#include "browser/page/find_bar.h"
#include "browser/page/page_overlay.h"

TPageFinder::TPageFinder(QWebEnginePage *page, TPageOverlay *overlay, const TLanguage &language, QWidget *browser)
    : QObject(browser), m_page(page), m_overlay(overlay), m_language(language), m_browser(browser) {
  connect(page, &QWebEnginePage::findTextFinished, this, [this](const QWebEngineFindTextResult &result) {
    if (m_bar && m_bar->isVisible()) m_bar->ShowResult(result.activeMatch(), result.numberOfMatches());
  });
}

void TPageFinder::Open() {
  if (!m_bar) {
    m_bar = new TFindBar(m_language, m_browser);
    m_overlay->Add(m_bar, TPageOverlay::TSide::Trailing);
    connect(m_bar, &TFindBar::FindRequested, this,
            [this](const QString &text, bool forward, bool matchCase, bool) { Find(text, forward, matchCase); });
    connect(m_bar, &TFindBar::Closed, this, [this] {
      m_page->findText(QString());  // the marks go, and the match in front stays selected
      Q_EMIT Closed();
    });
  }
  m_bar->Open(m_page->selectedText());
}

void TPageFinder::FindNext(bool forward) {
  if (m_bar) m_bar->FindNext(forward);
}

void TPageFinder::CloseBar() {
  if (m_bar && m_bar->isVisible()) m_bar->Close();
}

void TPageFinder::Find(const QString &text, bool forward, bool matchCase) {
  QWebEnginePage::FindFlags flags;
  flags.setFlag(QWebEnginePage::FindBackward, !forward);
  flags.setFlag(QWebEnginePage::FindCaseSensitively, matchCase);
  m_page->findText(text, flags);
}
