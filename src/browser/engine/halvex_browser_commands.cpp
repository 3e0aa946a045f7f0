// The standard commands: what is done with the page that is shown.

#include <QPointer>
#include <QWebEngineView>

#include "browser/engine/engine_page.h"
#include "browser/engine/halvex_browser.h"
#include "browser/engine/page_finder.h"
#include "browser/engine/page_printing.h"
#include "browser/engine/page_probe.h"
#include "browser/engine/page_saving.h"
#include "browser/engine/page_zoom.h"
#include "browser/engine/policy.h"
#include "browser/engine/word_marks.h"
#include "browser/page/page_prompts.h"
#include "browser/page/properties_dialog.h"
#include "browser/page/site_permissions.h"
#include "browser/page/zone_name.h"

void THalvexBrowser::SaveAs() {
  if (HasLivePage()) PageSaving::SaveAs(m_page, m_owner ? m_owner.data() : this, m_engine.Language());
}

void THalvexBrowser::Print() {
  if (HasLivePage()) m_printing->Print();
}

void THalvexBrowser::PrintWithoutAsking() {
  if (HasLivePage()) m_printing->PrintWithoutAsking();
}

void THalvexBrowser::PrintPreview() {
  if (HasLivePage()) m_printing->Preview();
}

void THalvexBrowser::PageSetup() {
  TPagePrinting::SetUpPage(m_engine, window());
}

void THalvexBrowser::Properties() {
  CollectProperties([self = QPointer(this)](const TPageProperties &properties) {
    if (!self) return;
    auto *dialog = new TPropertiesDialog(properties, self->m_engine.Language(), self->window());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    if (self->HasLivePage()) {
      for (QWidget *site : self->m_page->findChild<TPagePrompts *>()->SitePermissions(dialog)) dialog->AddSection(site);
    }
    dialog->open();
  });
}

// Never in a page that is hidden behind a notice.
void THalvexBrowser::Edit(int action) {
  if (HasLivePage()) m_page->triggerAction(QWebEnginePage::WebAction(action));
}

void THalvexBrowser::Cut() {
  GivePageTheFocus();
  Edit(QWebEnginePage::Cut);
}

void THalvexBrowser::Copy() {
  GivePageTheFocus();
  Edit(QWebEnginePage::Copy);
}

void THalvexBrowser::Paste() {
  GivePageTheFocus();
  Edit(QWebEnginePage::Paste);
}

void THalvexBrowser::SelectAll() {
  Edit(QWebEnginePage::SelectAll);
}

void THalvexBrowser::Undo() {
  Edit(QWebEnginePage::Undo);
}

void THalvexBrowser::Redo() {
  Edit(QWebEnginePage::Redo);
}

void THalvexBrowser::SetZoom(int zoom) {
  m_zoom->SetTextSize(zoom);
}

int THalvexBrowser::Zoom() const {
  return m_zoom->TextSize();
}

void THalvexBrowser::ZoomIn() {
  m_zoom->Step(true);
}

void THalvexBrowser::ZoomOut() {
  m_zoom->Step(false);
}

void THalvexBrowser::ResetZoom() {
  m_zoom->Reset();
}

int THalvexBrowser::ZoomPercent() const {
  return m_zoom->Percent();
}

void THalvexBrowser::FindOnPage() {
  if (!HasLivePage()) return;
  GivePageTheFocus();
  m_finder->Open();
}

void THalvexBrowser::FindNext(bool forward) {
  if (!HasLivePage()) return;
  if (m_finder->WasOpened()) {
    m_finder->FindNext(forward);
  } else {
    FindOnPage();
  }
}

void THalvexBrowser::ViewSource() {
  if (!HasLivePage() || m_page->url().scheme() == QLatin1String("view-source")) return;
  Q_EMIT ViewSourceRequested(TAddress::OfEngine(QStringLiteral("view-source:") + LocationUrl()));
}

void THalvexBrowser::LookForWords(const QStringList &words, bool marks) {
  // A page that sleeps is looked through when it has come back.
  if (!m_page || IsAsleep() || (m_words == nullptr && words.isEmpty())) return;
  if (m_words == nullptr) {
    m_words = new TWordMarks(m_page);
    connect(m_words, &TWordMarks::Found, this, &THalvexBrowser::WordsFound);
    connect(m_words, &TWordMarks::Clicked, this, [this](int word, const QPoint &at) {
      const QRect view = m_view->rect();
      Q_EMIT WordClicked(
          word, m_view->mapToGlobal(QPoint(qBound(0, at.x(), view.right()), qBound(0, at.y(), view.bottom()))));
    });
  }
  m_words->Look(words, marks);
}

void THalvexBrowser::SaveToTemporaryFile(bool insertBase, const std::function<void(const QString &)> &done) {
  if (!HasLivePage()) {
    done({});
    return;
  }
  m_page->toHtml([address = LocationUrl(), insertBase, done](const QString &html) {
    done(PageSaving::WriteTemporary(insertBase ? PageSaving::InsertBase(html, address) : html));
  });
}

void THalvexBrowser::CollectProperties(const std::function<void(const TPageProperties &)> &done) {
  const QString zone = ZoneName(static_cast<int>(ZoneOf(LocationUrl())), m_engine.Language());
  if (!HasLivePage()) {
    TPageProperties properties;
    properties.title = LocationName();
    properties.address = LocationUrl();
    properties.zone = zone;
    done(properties);
    return;
  }
  ProbePage(m_page, m_engine.Language(), [zone, done](TPageProperties properties) {
    properties.zone = zone;
    done(properties);
  });
}
