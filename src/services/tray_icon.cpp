#include "services/tray_icon.h"

#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QMenu>
#include <utility>

#include "actions/actions.h"
#include "browser/tabs/browser_tab.h"
#include "browser/tabs/tab_strip.h"
#include "config/language.h"
#include "config/settings.h"
#include "platform/window_activation.h"
#include "services/notification_area.h"
#include "ui/shown_text.h"
#include "ui/window_hiding.h"

namespace {

constexpr int LookInterval = 2000;       // milliseconds
constexpr qsizetype LongestTitle = 200;  // characters

}  // namespace

TTrayIcon::TTrayIcon(QWidget *window, TActions &actions, TTabStrip &tabs, const TLanguage &language,
                     TSettings &settings, TMakeArea makeArea)
    : m_window(window),
      m_actions(actions),
      m_tabs(tabs),
      m_language(language),
      m_settings(settings),
      m_makeArea(std::move(makeArea)) {
  setObjectName(QStringLiteral("pgTray"));
  QMenu *menu = actions.Menu(TMenu::Tray);
  if (!m_makeArea) m_makeArea = [menu] { return std::make_unique<TSystemNotificationArea>(menu); };
  menu->setDefaultAction(actions[TCommand::TrayRestore]);
  connect(menu, &QMenu::aboutToShow, this, &TTrayIcon::UpdateMenu);
  connect(actions[TCommand::TrayRestore], &QAction::triggered, this, &TTrayIcon::Toggle);
  connect(actions[TCommand::TrayExit], &QAction::triggered, window, &QWidget::close);
  m_look.setObjectName(QStringLiteral("tmrTray"));
  m_look.setInterval(LookInterval);
  connect(&m_look, &QTimer::timeout, this, [this] {
    if (m_area == nullptr || !m_area->IsThere()) BringBack();
  });
  window->installEventFilter(this);
  m_hiding = std::make_unique<TWindowHiding>(window);
  connect(m_hiding.get(), &TWindowHiding::Returned, this, &TTrayIcon::TakeReturn);
  settings.Apply(Setting::MinToTray, this, [this] { Apply(); });
}

TTrayIcon::~TTrayIcon() = default;

void TTrayIcon::Apply() {
  const bool isWanted = m_settings.Get(Setting::MinToTray);
  if (isWanted == (m_area != nullptr)) return;
  if (!isWanted) {
    BringBack();
    m_area.reset();
    return;
  }
  m_area = m_makeArea();
  connect(m_area.get(), &TNotificationArea::Activated, this, &TTrayIcon::Toggle);
  connect(m_area.get(), &TNotificationArea::Clicked, this, &TTrayIcon::TakeClick);
  connect(m_area.get(), &TNotificationArea::MessageClicked, this, &TTrayIcon::BringBack);
  connect(m_area.get(), &TNotificationArea::NotTold, this, &TTrayIcon::BringBack);
  m_isMinimized ? TakeMinimized() : TakeRestored();
  if (m_window->isVisible() && !m_area->IsThere()) Q_EMIT Note(m_language.Text("MAIN", "TrayMissing"));
}

bool TTrayIcon::eventFilter(QObject *watched, QEvent *event) {
  if (watched == m_window && event->type() == QEvent::WindowStateChange && !m_hiding->IsAway()) {
    const bool isMinimized = m_window->isMinimized();
    if (isMinimized != m_isMinimized) isMinimized ? TakeMinimized() : TakeRestored();
    // Not from within what the window is told of itself.
    if (isMinimized) QMetaObject::invokeMethod(this, &TTrayIcon::GoAway, Qt::QueuedConnection);
  }
  // A question whose window is nowhere to be seen would come from nowhere.
  const auto *dialog = event->type() == QEvent::Show ? qobject_cast<const QDialog *>(watched) : nullptr;
  if (dialog != nullptr && m_hiding->IsAway() && dialog->isModal()) {
    QMetaObject::invokeMethod(this, &TTrayIcon::BringBack, Qt::QueuedConnection);
  }
  return QObject::eventFilter(watched, event);
}

void TTrayIcon::Toggle() {
  if (m_isMinimized) {
    Restore();
  } else if (MayGoAway()) {
    TakeMinimized();
    GoAway();
  } else {
    m_window->setWindowState(m_window->windowState() | Qt::WindowMinimized);
  }
}

void TTrayIcon::TakeClick() {
  // The second one of a double click would take back what the first has done.
  if (m_clicked.isValid() && m_clicked.elapsed() < QApplication::doubleClickInterval()) return;
  m_clicked.start();
  Toggle();
}

void TTrayIcon::TakeMinimized() {
  m_isMinimized = true;
  const TBrowserTab *tab = m_tabs.GetActivePage();
  QString title = tab == nullptr ? QString() : tab->Title();
  if (tab != nullptr && title.isEmpty()) title = tab->ListCaption();
  // What the page calls itself later is not followed.
  if (m_area) {
    m_area->SetHint(QApplication::applicationDisplayName() + QStringLiteral(" - ") +
                    OneLine(Shortened(title, LongestTitle)));
  }
  UpdateMenu();
}

void TTrayIcon::TakeRestored() {
  m_isMinimized = false;
  if (m_area) m_area->SetHint(QApplication::applicationDisplayName());
  UpdateMenu();
}

// Also when the state changes: some desktops keep the menu by themselves and show what they were told last.
void TTrayIcon::UpdateMenu() {
  m_actions[TCommand::TrayRestore]->setText(m_isMinimized ? m_language.Text("MAIN", "TrayRestore")
                                                          : m_language.Text("MAIN", "TrayMinimize"));
}

bool TTrayIcon::MayGoAway() const {
  // A question that is open stays in reach, and its window with it.
  return m_area != nullptr && QApplication::activeModalWidget() == nullptr && m_area->IsThere();
}

void TTrayIcon::GoAway() {
  if (m_hiding->IsAway() || !m_isMinimized || !MayGoAway()) return;
  m_hiding->Hide();
  qApp->installEventFilter(this);
  m_look.start();
}

void TTrayIcon::TakeReturn() {
  qApp->removeEventFilter(this);
  m_look.stop();
  TakeRestored();
}

void TTrayIcon::BringBack() {
  if (m_hiding->IsAway()) Restore();
}

void TTrayIcon::Restore() {
  if (m_hiding->IsAway()) {
    m_hiding->Show();
  } else {
    m_window->setWindowState(m_window->windowState() & ~Qt::WindowMinimized);
  }
  if (QWindow *handle = m_window->windowHandle()) BringToFront(*handle);
}

void TTrayIcon::Say(const QString &title, const QString &text) {
  if (m_hiding->IsAway() && m_area) m_area->Tell(title, text);
}

void TTrayIcon::Save() {
  m_settings.Keep(Setting::MinToTray);
}
