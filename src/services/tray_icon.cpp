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

namespace {

constexpr int LookInterval = 2000;       // milliseconds
constexpr int SettleTime = 1000;         // milliseconds
constexpr qsizetype LongestTitle = 200;  // characters
constexpr Qt::WindowStates Own = Qt::WindowMaximized | Qt::WindowFullScreen;

bool BelongsTo(const QWidget *widget, const QWidget *window) {
  while (widget != nullptr && widget != window) widget = widget->parentWidget();
  return widget == window;
}

QList<QPointer<QWidget>> OtherWindowsOf(const QWidget *window) {
  QList<QPointer<QWidget>> others;
  for (QWidget *one : QApplication::topLevelWidgets()) {
    const bool isPassing = one->windowType() == Qt::Popup || one->windowType() == Qt::ToolTip;
    if (one != window && one->isVisible() && !isPassing && BelongsTo(one, window)) others.append(one);
  }
  return others;
}

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
  settings.Apply(Setting::MinToTray, this, [this] { Apply(); });
}

TTrayIcon::~TTrayIcon() {
  if (m_isAway) QApplication::setQuitOnLastWindowClosed(true);
}

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
  connect(m_area.get(), &TNotificationArea::MessageClicked, this, &TTrayIcon::BringBack);
  m_isMinimized ? TakeMinimized() : TakeRestored();
  if (m_window->isVisible() && !m_area->IsThere()) Q_EMIT Note(m_language.Text("MAIN", "TrayMissing"));
}

// The desktop takes all states from a window that goes out of sight; from 6.8 on the toolkit hears of that, then or
// only when the window has come back.
bool TTrayIcon::HasLostStates() const {
  if ((m_window->windowState() & Own) == m_states) return false;
  if (!m_window->isVisible()) return m_wasAway;
  // Later it is the user.
  return !m_settles.hasExpired();
}

bool TTrayIcon::eventFilter(QObject *watched, QEvent *event) {
  if (watched == m_window && event->type() == QEvent::WindowStateChange && HasLostStates()) {
    m_window->setWindowState((m_window->windowState() & ~Own) | m_states);
    return true;
  }
  if (watched == m_window && event->type() == QEvent::WindowStateChange && !m_isAway) {
    const bool isMinimized = m_window->isMinimized();
    if (isMinimized != m_isMinimized) isMinimized ? TakeMinimized() : TakeRestored();
    // Not from within what the window is told of itself.
    if (isMinimized) QMetaObject::invokeMethod(this, &TTrayIcon::GoAway, Qt::QueuedConnection);
  }
  // Somebody else has shown it.
  if (watched == m_window && event->type() == QEvent::Show && m_isAway) Return();
  // A question whose window is nowhere to be seen would come from nowhere.
  const auto *dialog = event->type() == QEvent::Show ? qobject_cast<const QDialog *>(watched) : nullptr;
  if (dialog != nullptr && m_isAway && dialog->isModal()) {
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
  if (m_isAway || !m_isMinimized || !MayGoAway()) return;
  m_isAway = m_wasAway = true;
  m_states = m_window->windowState() & Own;
  m_place = m_window->pos();
  m_along = OtherWindowsOf(m_window);
  // A dialog that closes now would be the last window to be seen.
  QApplication::setQuitOnLastWindowClosed(false);
  for (const QPointer<QWidget> &other : std::as_const(m_along)) other->hide();
  m_window->hide();
  qApp->installEventFilter(this);
  m_look.start();
}

// The window is about to be seen, or is.
void TTrayIcon::Return() {
  m_isAway = false;
  qApp->removeEventFilter(this);
  m_look.stop();
  QApplication::setQuitOnLastWindowClosed(true);
  TakeRestored();
}

void TTrayIcon::BringBack() {
  if (m_isAway) Restore();
}

void TTrayIcon::Restore() {
  if (m_isAway) {
    Return();
    m_window->setWindowState((m_window->windowState() & ~(Own | Qt::WindowMinimized)) | m_states);
    if (m_states == Qt::WindowNoState) m_window->move(m_place);
    m_settles.setRemainingTime(m_states == Qt::WindowNoState ? 0 : SettleTime);
    m_window->show();
    for (const QPointer<QWidget> &other : std::exchange(m_along, {})) {
      if (other) other->show();
    }
  } else {
    m_window->setWindowState(m_window->windowState() & ~Qt::WindowMinimized);
  }
  if (QWindow *handle = m_window->windowHandle()) BringToFront(*handle);
}

void TTrayIcon::Say(const QString &title, const QString &text) {
  if (m_isAway && m_area) m_area->Tell(title, text);
}

void TTrayIcon::Save() {
  m_settings.Keep(Setting::MinToTray);
}
