#include "browser/engine/halvex_browser_private.h"

#include <QAction>
#include <QApplication>
#include <QWebEngineFindTextResult>
#include <QWebEngineFullScreenRequest>

#include "browser/engine/address.h"
#include "browser/page/page_menu.h"
#include "config/language.h"
#include "ui/shown_address.h"

void THalvexBrowser::TPrivate::BuildFrame() {
  q->setObjectName(QStringLiteral("THalvexBrowser"));
  layout = new QVBoxLayout(q);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  stack = new QStackedWidget(q);
  layout->addWidget(stack, 1);
  // The colour of an empty page, so that nothing changes when the engine takes over.
  sheet = new QWidget;
  sheet->setObjectName(QStringLiteral("blankSheet"));
  QPalette white = sheet->palette();
  white.setColor(QPalette::Window, Qt::white);
  sheet->setPalette(white);
  sheet->setAutoFillBackground(true);
  sheet->setFocusPolicy(Qt::StrongFocus);
  stack->addWidget(sheet);
  q->setFocusProxy(sheet);

  // The engine's inner widgets come and go; the application knows where the keyboard went.
  connect(qApp, &QApplication::focusChanged, q, [this](QWidget *old, QWidget *now) {
    if (now && stack->isAncestorOf(now) && !(old && stack->isAncestorOf(old))) Q_EMIT q->FocusReceived();
  });
  escape = new QShortcut(QKeySequence(Qt::Key_Escape), q);
  escape->setContext(Qt::WidgetWithChildrenShortcut);
  connect(escape, &QShortcut::activated, q, &THalvexBrowser::LeavePageFullScreen);
  escape->setEnabled(false);
}

void THalvexBrowser::TPrivate::EnsureView() {
  if (view) return;
  blank = false;
  page = new TEnginePage(engine, q, nullptr);
  view = new QWebEngineView(page, nullptr);
  page->setParent(view);
  view->setContextMenuPolicy(Qt::CustomContextMenu);
  stack->addWidget(view);
  prompts = new TPagePrompts(page, q, engine.Language());
  layout->insertWidget(0, prompts->Bar());
  printing = new TPagePrinting(engine, view, q);
  page->WatchInput(view);
  page->SetDownloadControlOptions(options);
  page->setZoomFactor(zoom);
  ConnectPage();
  Show(view);
}

void THalvexBrowser::TPrivate::ConnectPage() {
  connect(page, &TEnginePage::BeforeNavigate, q, &THalvexBrowser::BeforeNavigate);
  connect(page, &TEnginePage::AddressChanged, q, [this](const QString &address) {
    if (notice != TNotice::LocalError) Q_EMIT q->AddressChanged(address);
  });
  connect(page, &TEnginePage::Committed, q, [this](const QString &address) { OnCommitted(address); });
  connect(page, &TEnginePage::Failed, q, [this](const TLoadFailure &failure) { ShowLoadFailure(failure); });
  connect(page, &TEnginePage::Finished, q, [this](const QString &address) { OnFinished(address); });
  connect(page, &TEnginePage::Died, q, [this] { ShowCrash(); });
  connect(page, &TEnginePage::EncryptionLevelChanged, q, [this] { UpdateEncryptionLevel(); });
  connect(page, &TEnginePage::BringToFrontRequested, q, &THalvexBrowser::BringToFrontRequested);
  connect(page, &TEnginePage::ZoomWanted, q, [this](bool in) { in ? q->ZoomIn() : q->ZoomOut(); });
  connect(page, &QWebEnginePage::loadProgress, q, [this](int progress) {
    if (page->IsUnderWay()) Q_EMIT q->ProgressChanged(progress, 100);
  });
  connect(page, &QWebEnginePage::titleChanged, q, [this](const QString &title) {
    if (notice != TNotice::LocalError) Q_EMIT q->TitleChanged(title);
  });
  connect(page, &QWebEnginePage::iconChanged, q, [this] { Q_EMIT q->IconChanged(); });
  connect(page, &QWebEnginePage::linkHovered, q, &THalvexBrowser::StatusTextChanged);
  connect(page, &QWebEnginePage::newWindowRequested, q,
          [this](QWebEngineNewWindowRequest &request) { Q_EMIT q->NewWindowRequested(&request); });
  connect(page, &QWebEnginePage::fullScreenRequested, q,
          [this](const QWebEngineFullScreenRequest &request) { OnFullScreenRequested(request); });
  connect(page, &QWebEnginePage::printRequested, printing, &TPagePrinting::PrintForPage);
  connect(page, &QWebEnginePage::findTextFinished, q, [this](const QWebEngineFindTextResult &result) {
    if (findBar) findBar->ShowResult(result.activeMatch(), result.numberOfMatches());
  });
  connect(view, &QWidget::customContextMenuRequested, q, [this](const QPoint &at) { ShowPageMenu(at); });
  for (const QWebEnginePage::WebAction action : {QWebEnginePage::Back, QWebEnginePage::Forward}) {
    connect(page->action(action), &QAction::changed, q, [this] { UpdateCommandStates(); });
  }
}

void THalvexBrowser::TPrivate::Show(QWidget *widget) {
  QWidget *focused = QApplication::focusWidget();
  const bool hadFocus = focused && (focused == stack || stack->isAncestorOf(focused));
  stack->setCurrentWidget(widget);
  q->setFocusProxy(widget);
  if (hadFocus) widget->setFocus();
}

void THalvexBrowser::TPrivate::GivePageTheFocus() {
  if (HasLivePage()) view->setFocus();
}

void THalvexBrowser::TPrivate::ShowNotice(TNotice kind, const TPageNoticeText &text) {
  if (!noticeWidget) {
    noticeWidget = new TPageNotice;
    stack->addWidget(noticeWidget);
    connect(noticeWidget, &TPageNotice::PrimaryPressed, q, [this] { OnNoticePrimary(); });
    connect(noticeWidget, &TPageNotice::SecondaryPressed, q, [this] { OnNoticeSecondary(); });
  }
  notice = kind;
  if (findBar && findBar->isVisible()) findBar->Close();
  noticeWidget->Show(text);
  Show(noticeWidget);
  UpdateEncryptionLevel();
  UpdateCommandStates();
  Q_EMIT q->IconChanged();
}

void THalvexBrowser::TPrivate::HideNotice() {
  if (notice == TNotice::None) return;
  notice = TNotice::None;
  localAddress = {};
  Show(view ? view : sheet);
  UpdateEncryptionLevel();
  UpdateCommandStates();
  Q_EMIT q->IconChanged();
}

void THalvexBrowser::TPrivate::ShowLoadFailure(const TLoadFailure &failure) {
  const TLanguage &language = engine.Language();
  if (const std::optional<TCertificateProblem> problem = page->CertificateProblem()) {
    blockedHost = problem->url.host();
    TPageNoticeText text{.title = language.Text("PAGES", "CertificateTitle"),
                         .text = CertificateProblemText(*problem, language),
                         .address = ShownAddress(AddressOf(failure.url)),
                         .details = DescribeCertificate(problem->chain.value(0), language),
                         .primary = language.Text("PAGES", "GoBack")};
    if (problem->overridable) text.secondary = language.Text("PAGES", "GoOnAnyway");
    ShowNotice(TNotice::Certificate, text);
    return;
  }
  ShowNotice(TNotice::LoadError, {.title = language.Text("PAGES", "ErrorTitle"),
                                  .text = FailureText(failure, language),
                                  .address = ShownAddress(AddressOf(failure.url)),
                                  .details = failure.name,
                                  .primary = language.Text("PAGES", "TryAgain")});
}

void THalvexBrowser::TPrivate::ShowLocalFailure(const TAddress &address, const QString &text) {
  const TLanguage &language = engine.Language();
  if (page) page->triggerAction(QWebEnginePage::Stop);
  blank = false;
  localAddress = address;
  const QString shown = LocalText();
  ShowNotice(TNotice::LocalError, {.title = language.Text("PAGES", "ErrorTitle"),
                                   .text = text,
                                   .address = shown,
                                   .primary = language.Text("PAGES", "TryAgain")});
  Q_EMIT q->AddressChanged(shown);
  Q_EMIT q->TitleChanged(shown);
  Q_EMIT q->DocumentComplete(shown);
}

void THalvexBrowser::TPrivate::ShowCrash() {
  const TLanguage &language = engine.Language();
  ShowNotice(TNotice::Crash, {.title = language.Text("PAGES", "CrashTitle"),
                              .text = language.Text("PAGES", "CrashText"),
                              .address = ShownAddress(AddressOf(page->url())),
                              .primary = language.Text("PAGES", "Reload")});
}

void THalvexBrowser::TPrivate::OnNoticePrimary() {
  if (notice != TNotice::Certificate) {
    q->Refresh();
  } else if (q->CanGoBack()) {
    q->GoBack();
  } else {
    q->ShowBlank();
  }
}

void THalvexBrowser::TPrivate::OnNoticeSecondary() {
  if (notice != TNotice::Certificate) return;
  engine.AcceptCertificateErrors(blockedHost);
  q->Refresh();
}

void THalvexBrowser::TPrivate::OnCommitted(const QString &address) {
  HideNotice();
  // A page of another site may get a renderer of its own, which starts at the plain size.
  if (!qFuzzyCompare(page->zoomFactor(), zoom)) page->setZoomFactor(zoom);
  UpdateEncryptionLevel();
  Q_EMIT q->NavigateComplete(address);
}

void THalvexBrowser::TPrivate::OnFinished(const QString &address) {
  UpdateCommandStates();
  RepeatTitle();
  Q_EMIT q->DocumentComplete(notice == TNotice::LocalError ? LocalText() : address);
}

void THalvexBrowser::TPrivate::OnFullScreenRequested(QWebEngineFullScreenRequest request) {
  if (request.toggleOn() && !view->isVisible()) {
    request.reject();
    return;
  }
  request.accept();
  fullScreen = request.toggleOn();
  escape->setEnabled(fullScreen);
  Q_EMIT q->PageFullScreenRequested(fullScreen);
  if (fullScreen) {
    prompts->ShowFullScreenNotice(view, request.origin());
  } else {
    prompts->HideFullScreenNotice();
  }
}

void THalvexBrowser::TPrivate::ShowPageMenu(const QPoint &position) {
  const QWebEngineContextMenuRequest *request = view->lastContextMenuRequest();
  if (!request) return;
  auto *menu = new TPageMenu(engine.Language(), TPageMenuPlace::Of(*request, *page), page, q);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  connect(menu, &TPageMenu::OpenRequested, q, &THalvexBrowser::OpenInNewTabRequested);
  connect(menu, &TPageMenu::CommandRequested, q, [this](TPageMenuCommand command) {
    switch (command) {
      case TPageMenuCommand::SaveAs:
        q->SaveAs();
        break;
      case TPageMenuCommand::Print:
        q->Print();
        break;
      case TPageMenuCommand::Find:
        q->FindOnPage();
        break;
      case TPageMenuCommand::ViewSource:
        q->ViewSource();
        break;
      case TPageMenuCommand::Properties:
        q->Properties();
        break;
    }
  });
  menu->popup(view->mapToGlobal(position));
}

void THalvexBrowser::TPrivate::EnsureFindBar() {
  if (findBar) return;
  findBar = new TFindBar(engine.Language(), q);
  layout->addWidget(findBar);
  connect(findBar, &TFindBar::FindRequested, q,
          [this](const QString &text, bool forward, bool matchCase, bool) { Find(text, forward, matchCase); });
  connect(findBar, &TFindBar::Closed, q, [this] { GivePageTheFocus(); });
}

void THalvexBrowser::TPrivate::Find(const QString &text, bool forward, bool matchCase) {
  QWebEnginePage::FindFlags flags;
  flags.setFlag(QWebEnginePage::FindBackward, !forward);
  flags.setFlag(QWebEnginePage::FindCaseSensitively, matchCase);
  page->findText(text, flags);
}

void THalvexBrowser::TPrivate::UpdateEncryptionLevel() {
  const bool known = HasLivePage() && !page->CertificateProblem();
  const TEncryptionLevel level = known ? page->EncryptionLevel() : TEncryptionLevel::None;
  if (level == encryptionLevel) return;
  encryptionLevel = level;
  Q_EMIT q->SecureLockIconChanged(level);
}

void THalvexBrowser::TPrivate::UpdateCommandStates() {
  const bool back = q->CanGoBack();
  const bool forward = q->CanGoForward();
  if (back != canGoBack) {
    canGoBack = back;
    Q_EMIT q->CommandStateChanged(static_cast<int>(TBrowserCommand::Back), back);
  }
  if (forward != canGoForward) {
    canGoForward = forward;
    Q_EMIT q->CommandStateChanged(static_cast<int>(TBrowserCommand::Forward), forward);
  }
}

void THalvexBrowser::TPrivate::Trigger(QWebEnginePage::WebAction action) {
  if (page) page->triggerAction(action);
}

void THalvexBrowser::TPrivate::RepeatTitle() {
  const QString title = q->LocationName();
  if (!title.isEmpty()) Q_EMIT q->TitleChanged(title);
}
