#include "app/main_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QLayout>
#include <QMenuBar>
#include <QToolBar>

#include "app/about_dialog.h"
#include "app/modules.h"
#include "app/shutdown_question.h"
#include "app/store_notice.h"
#include "browser/tabs/browser_tab.h"
#include "chrome/side_bar/side_bar_frame.h"
#include "chrome/toolbar/toolbar_panel.h"
#include "config/user_agent_token.h"
#include "ui/dialog_gate.h"

namespace {

constexpr int DelayedStartInterval = 1;  // milliseconds
constexpr int EndPatience = 5000;
constexpr QSize SmallestSize(320, 240);  // pixels

}  // namespace

TfrmMain::TfrmMain(TRegistryStore &store, const QString &argument) : m_settings(store), m_argument(argument) {
  FormCreate();
}

TfrmMain::~TfrmMain() {
  FormDestroy();
}

TTabStrip &TfrmMain::Tabs() const {
  return m_modules->tabs;
}

TActions &TfrmMain::Actions() const {
  return m_modules->actions;
}

QMenuBar *TfrmMain::menuBar() const {
  return m_modules->menuBar->Bar();
}

void TfrmMain::FormCreate() {
  setObjectName(QStringLiteral("frmMain"));
  // The bars are shown and hidden in the View menu, which remembers it.
  setContextMenuPolicy(Qt::NoContextMenu);
  setMinimumSize(SmallestSize);
  m_settings.Lists().RemoveZvid();
  LoadLanguage();
  // Before the modules, whose pages are to have it from the first on.
  UserAgentToken::Register(m_settings.Store(), true);
  m_modules = std::make_unique<TModules>(this, m_settings, m_language);
  m_storeNotice = std::make_unique<TStoreNotice>(this, m_settings.Store(), m_modules->history, m_language);
  LayOut();
  connect(m_modules->actions[TCommand::About], &QAction::triggered, this,
          [this] { ShowAboutDialog(m_language, this); });
  connect(m_modules->actions[TCommand::Exit], &QAction::triggered, this, &QWidget::close);

  m_modules->tabs.NewTab(TTabPlace::AtEnd);
  m_modules->bands->SetArrangement(m_modules->bandStore.Load());
  m_modules->bars.Apply();
  m_modules->placement.Restore();
  m_modules->fullScreen.Restore();

  m_loadCoolbar.setObjectName(QStringLiteral("tmrLoadCoolbar"));
  m_loadCoolbar.setSingleShot(true);
  m_loadCoolbar.setInterval(DelayedStartInterval);
  connect(&m_loadCoolbar, &QTimer::timeout, this, &TfrmMain::tmrLoadCoolbarTimer);
  m_loadCoolbar.start();
}

void TfrmMain::LoadLanguage() {
  m_language.Load(m_settings.Lists());
  QApplication::setLayoutDirection(m_language.Direction());
  m_language.InstallToolkitTranslations(qApp);
  if (const QString locale = m_language.LocaleName(); !locale.isEmpty()) QLocale::setDefault(QLocale(locale));
}

void TfrmMain::LayOut() {
  TCoolBar *bands = m_modules->bands;
  setMenuWidget(bands);
  bands->SetContent(TBand::Menu, m_modules->menuBar);
  bands->SetContent(TBand::Tool, &m_modules->toolbars.ToolbarPanel());
  bands->SetContent(TBand::Address, m_modules->toolbars.AddressBand());
  bands->SetContent(TBand::Links, m_modules->favorites.Links());
  setStatusBar(m_modules->status);
  setCentralWidget(m_modules->sideBar.Frame());
  m_language.TranslateForm(this, "MAIN");
}

void TfrmMain::tmrLoadCoolbarTimer() {
  // What the bands hold may want other sizes since it is shown.
  layout()->activate();
  // The toolkit has begun with what stands first for the Tab key, the grip of a band.
  QWidget *first = m_modules->address;
  if (!first->isVisible()) first = m_modules->tabs.GetActivePage();
  first->setFocus();
  m_modules->OpenFirstPages(m_argument);
  m_storeNotice->Begin();
}

void TfrmMain::wmCopyDataDataReceived(const QString &text) {
  m_modules->handedOver.Take(text);
}

void TfrmMain::CloseWithoutAsking() {
  m_closeConfirmed = true;
  DialogGate::Close();
  // A question that is open is answered with no: it stands in the way of the end, and its answer does not matter any
  // more.
  constexpr int MostDialogs = 20;
  for (int i = 0; i < MostDialogs; ++i) {
    auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
    if (dialog == nullptr) break;
    dialog->reject();
  }
  m_modules->tabs.Leaving().GiveUp();
  QMetaObject::invokeMethod(
      this, [this] { close(); }, Qt::QueuedConnection);
}

void TfrmMain::WriteAll() {
  m_modules->Write();
}

void TfrmMain::FormCloseQuery(bool &canClose) {
  canClose = m_closeConfirmed ||
             (AskShutdown(this, m_language, m_settings, m_modules->downloads) && m_modules->PagesMayGo()) ||
             m_closeConfirmed;
}

void TfrmMain::closeEvent(QCloseEvent *event) {
  bool canClose = true;
  FormCloseQuery(canClose);
  if (!canClose) {
    event->ignore();
    return;
  }
  m_closeConfirmed = true;
  m_modules->downloadsView.Close();
  event->accept();
  Q_EMIT Closing();
}

void TfrmMain::FormDestroy() {
  m_storeNotice.reset();
  m_loadCoolbar.stop();
  m_modules->Save();
  UserAgentToken::Register(m_settings.Store(), false);
  hide();
  const QStringList unwritten = m_modules->Unwritten(EndPatience);
  m_modules.reset();
  if (!unwritten.isEmpty()) TellUnwritten(m_language, unwritten);
  DialogGate::Open();
}
