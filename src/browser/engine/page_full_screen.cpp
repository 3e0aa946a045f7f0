#include "browser/engine/page_full_screen.h"

#include <QShortcut>
#include <QWebEngineFullScreenRequest>
#include <QWebEnginePage>
#include <QWebEngineView>

#include "browser/page/page_prompts.h"

TPageFullScreen::TPageFullScreen(QWebEngineView *view, TPagePrompts *prompts, QWidget *browser)
    : QObject(browser), m_view(view), m_prompts(prompts), m_escape(new QShortcut(Qt::Key_Escape, browser)) {
  m_escape->setContext(Qt::WidgetWithChildrenShortcut);
  m_escape->setEnabled(false);
  connect(m_escape, &QShortcut::activated, this, &TPageFullScreen::Leave);
  connect(view->page(), &QWebEnginePage::fullScreenRequested, this,
          [this](const QWebEngineFullScreenRequest &request) { OnRequested(request); });
}

void TPageFullScreen::Leave() {
  if (m_on) m_view->page()->triggerAction(QWebEnginePage::ExitFullScreen);
}

void TPageFullScreen::OnRequested(QWebEngineFullScreenRequest request) {
  if (request.toggleOn() && !m_view->isVisible()) {
    request.reject();
    return;
  }
  request.accept();
  m_on = request.toggleOn();
  m_escape->setEnabled(m_on);
  Q_EMIT Changed(m_on);
  if (m_on) {
    m_prompts->ShowFullScreenNotice(m_view, request.origin());
  } else {
    m_prompts->HideFullScreenNotice();
  }
}
