#include "browser/engine/halvex_browser.h"

#include <QAction>
#include <QDesktopServices>
#include <QWebEngineFindTextResult>

#include "browser/engine/address.h"
#include "browser/engine/halvex_browser_private.h"
#include "browser/engine/page_probe.h"
#include "browser/engine/page_saving.h"
#include "browser/page/properties_dialog.h"
#include "config/language.h"

namespace {

const QString &AboutBlank() {
  static const QString address = QStringLiteral("about:blank");
  return address;
}

}  // namespace

THalvexBrowser::THalvexBrowser(QWidget *owner, TEngine &engine, TDownloadControlOptionSet options, QWidget *parent)
    : QWidget(parent), d(std::make_unique<TPrivate>(this, owner, engine)) {
  d->options = options;
  d->BuildFrame();
}

THalvexBrowser::~THalvexBrowser() {
  if (!d->page) return;
  d->page->DismissDialogs();
  d->page->disconnect(this);
  delete d->printing;
  delete d->view;
}

void THalvexBrowser::Navigate(const TAddress &address) {
  switch (address.Kind()) {
    case TAddress::TKind::Empty:
      return;
    case TAddress::TKind::Script:
      if (d->HasLivePage()) {
        d->page->NoteUserAction();
        d->page->runJavaScript(address.Script());
      }
      d->RepeatTitle();
      return;
    case TAddress::TKind::External:
      QDesktopServices::openUrl(address.Url());
      d->RepeatTitle();
      return;
    case TAddress::TKind::UnknownKind:
      d->ShowLocalFailure(address, d->engine.Language().Text("PAGES", "ErrorUnknownScheme"));
      return;
    case TAddress::TKind::Invalid:
      d->ShowLocalFailure(address, d->engine.Language().Text("PAGES", "ErrorInvalidAddress"));
      return;
    case TAddress::TKind::Url:
      break;
  }
  if (!d->page && AddressOf(address.Url()) == AboutBlank()) {
    ShowBlank();
    return;
  }
  d->EnsureView();
  d->page->NoteUserAction();
  d->printing->Forgive();
  const QUrl before = d->page->url();
  if (d->notice == TPrivate::TNotice::LocalError) d->HideNotice();
  d->page->load(address.Url());
  // A jump inside the page is no load that would report a title.
  if (address.Url().hasFragment() && before.matches(address.Url(), QUrl::RemoveFragment)) d->RepeatTitle();
}

void THalvexBrowser::ShowBlank() {
  if (d->page) {
    if (d->notice == TPrivate::TNotice::LocalError) d->HideNotice();
    d->page->load(QUrl(AboutBlank()));
    return;
  }
  d->HideNotice();
  d->blank = true;
  // As with a page, the news comes after the call.
  QMetaObject::invokeMethod(
      this,
      [this] {
        if (!d->blank || d->page || d->notice != TPrivate::TNotice::None) return;
        Q_EMIT AddressChanged(AboutBlank());
        Q_EMIT NavigateComplete(AboutBlank());
        Q_EMIT DocumentComplete(AboutBlank());
      },
      Qt::QueuedConnection);
}

void THalvexBrowser::GoBack() {
  if (d->notice == TPrivate::TNotice::LocalError) {
    if (!CanGoBack()) return;
    d->HideNotice();
    Q_EMIT AddressChanged(LocationUrl());
    d->RepeatTitle();
    return;
  }
  d->Trigger(QWebEnginePage::Back);
}

void THalvexBrowser::GoForward() {
  d->Trigger(QWebEnginePage::Forward);
}

void THalvexBrowser::Stop() {
  d->Trigger(QWebEnginePage::Stop);
}

void THalvexBrowser::Refresh() {
  if (d->notice == TPrivate::TNotice::LocalError) {
    Navigate(TAddress(d->localAddress));
  } else {
    d->Trigger(QWebEnginePage::Reload);
  }
}

void THalvexBrowser::RefreshCompletely() {
  if (d->notice == TPrivate::TNotice::LocalError) {
    Navigate(TAddress(d->localAddress));
  } else {
    d->Trigger(QWebEnginePage::ReloadAndBypassCache);
  }
}

QString THalvexBrowser::LocationUrl() const {
  if (d->notice == TPrivate::TNotice::LocalError) return d->LocalText();
  if (d->page) return AddressOf(d->page->url());
  return d->blank ? AboutBlank() : QString();
}

QString THalvexBrowser::LocationName() const {
  if (d->notice == TPrivate::TNotice::LocalError) return d->LocalText();
  if (d->page) return d->page->title();
  return d->blank ? AboutBlank() : QString();
}

QIcon THalvexBrowser::Icon() const {
  return d->HasLivePage() ? d->page->icon() : QIcon();
}

bool THalvexBrowser::ShowsNotice() const {
  return d->notice != TPrivate::TNotice::None;
}

bool THalvexBrowser::CanGoBack() const {
  if (!d->page) return false;
  if (d->notice == TPrivate::TNotice::LocalError) return !d->page->url().isEmpty();
  return d->page->action(QWebEnginePage::Back)->isEnabled();
}

bool THalvexBrowser::CanGoForward() const {
  return d->page && d->notice != TPrivate::TNotice::LocalError && d->page->action(QWebEnginePage::Forward)->isEnabled();
}

void THalvexBrowser::SaveAs() {
  if (d->HasLivePage()) PageSaving::SaveAs(d->page, d->owner ? d->owner.data() : this, d->engine.Language());
}

void THalvexBrowser::Print() {
  if (d->HasLivePage()) d->printing->Print();
}

void THalvexBrowser::PrintWithoutAsking() {
  if (d->HasLivePage()) d->printing->PrintWithoutAsking();
}

void THalvexBrowser::PrintPreview() {
  if (d->HasLivePage()) d->printing->Preview();
}

void THalvexBrowser::PageSetup() {
  TPagePrinting::SetUpPage(d->engine, window());
}

void THalvexBrowser::Properties() {
  const QPointer<THalvexBrowser> self(this);
  CollectProperties([self](const TPageProperties &properties) {
    if (!self) return;
    auto *dialog = new TPropertiesDialog(properties, self->d->engine.Language(), self->window());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
  });
}

void THalvexBrowser::Cut() {
  d->GivePageTheFocus();
  d->Trigger(QWebEnginePage::Cut);
}

void THalvexBrowser::Copy() {
  d->GivePageTheFocus();
  d->Trigger(QWebEnginePage::Copy);
}

void THalvexBrowser::Paste() {
  d->GivePageTheFocus();
  d->Trigger(QWebEnginePage::Paste);
}

void THalvexBrowser::SelectAll() {
  d->Trigger(QWebEnginePage::SelectAll);
}

void THalvexBrowser::Undo() {
  d->Trigger(QWebEnginePage::Undo);
}

void THalvexBrowser::Redo() {
  d->Trigger(QWebEnginePage::Redo);
}

void THalvexBrowser::SetZoom(int zoom) {
  if (zoom < 0 || zoom >= int(ZoomFactors.size())) return;
  d->zoom = ZoomFactors[zoom];
  if (d->page) d->page->setZoomFactor(d->zoom);
}

int THalvexBrowser::Zoom() const {
  return NearestZoom(d->page ? d->page->zoomFactor() : d->zoom);
}

void THalvexBrowser::ZoomIn() {
  SetZoom(Zoom() + 1);
}

void THalvexBrowser::ZoomOut() {
  SetZoom(Zoom() - 1);
}

void THalvexBrowser::ResetZoom() {
  SetZoom(MediumZoom);
}

void THalvexBrowser::FindOnPage() {
  if (!d->HasLivePage()) return;
  d->GivePageTheFocus();
  d->EnsureFindBar();
  d->findBar->Open(d->page->selectedText());
}

void THalvexBrowser::FindNext(bool forward) {
  if (!d->HasLivePage()) return;
  if (d->findBar) {
    d->findBar->FindNext(forward);
  } else {
    FindOnPage();
  }
}

void THalvexBrowser::ViewSource() {
  if (!d->HasLivePage() || d->page->url().scheme() == QLatin1String("view-source")) return;
  Q_EMIT ViewSourceRequested(QStringLiteral("view-source:") + LocationUrl());
}

void THalvexBrowser::SaveToTemporaryFile(bool insertBase, const std::function<void(const QString &)> &done) {
  if (!d->HasLivePage()) {
    done({});
    return;
  }
  d->page->toHtml([address = LocationUrl(), insertBase, done](const QString &html) {
    done(PageSaving::WriteTemporary(insertBase ? PageSaving::InsertBase(html, address) : html));
  });
}

void THalvexBrowser::CollectProperties(const std::function<void(const TPageProperties &)> &done) {
  if (!d->HasLivePage()) {
    TPageProperties properties;
    properties.title = LocationName();
    properties.address = LocationUrl();
    done(properties);
    return;
  }
  ProbePage(d->page, d->engine.Language(), done);
}

TDownloadControlOptionSet THalvexBrowser::DownloadControlOptionSet() const {
  return d->options;
}

void THalvexBrowser::SetDownloadControlOptionSet(TDownloadControlOptionSet options) {
  d->options = options;
  if (d->page) d->page->SetDownloadControlOptions(options);
}

QWebEnginePage *THalvexBrowser::EnginePage() {
  d->EnsureView();
  return d->page;
}

QWebEnginePage *THalvexBrowser::EnginePageIfAny() const {
  return d->page;
}

bool THalvexBrowser::HasPageFullScreen() const {
  return d->fullScreen;
}

void THalvexBrowser::LeavePageFullScreen() {
  if (d->fullScreen) d->Trigger(QWebEnginePage::ExitFullScreen);
}
