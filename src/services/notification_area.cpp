#include "services/notification_area.h"

#include <QApplication>
#include <QSystemTrayIcon>

#include "platform/desktop_notifications.h"
#include "platform/status_notifier.h"

namespace {

// The toolkit takes what looks like markup for markup, and titles are the pages' own.
QString WithoutMarkup(QString text) {
  constexpr QChar ZeroWidthSpace(0x200B);
  for (const QChar sign : {u'<', u'&'}) text.replace(sign, QString(sign) + ZeroWidthSpace);
  return text;
}

}  // namespace

TSystemNotificationArea::TSystemNotificationArea(QMenu *menu) : m_menu(menu) {
  // The toolkit looks for an area on the bus once, with the first icon, and never again in the same run. With X11 it
  // has another way and follows areas that come; elsewhere there must be one by then.
  if (QGuiApplication::platformName() == QLatin1String("xcb") || StatusNotifier::HasHost()) {
    MakeIcon();
    return;
  }
  auto *watch = new TStatusNotifierWatch(this);
  connect(watch, &TStatusNotifierWatch::HostCame, this, [this, watch] {
    watch->deleteLater();
    if (m_icon == nullptr) MakeIcon();
  });
}

TSystemNotificationArea::~TSystemNotificationArea() = default;

void TSystemNotificationArea::MakeIcon() {
  m_isOnBus = StatusNotifier::IsThere();
  m_icon = std::make_unique<QSystemTrayIcon>(QApplication::windowIcon());
  m_icon->setContextMenu(m_menu);
  connect(m_icon.get(), &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
    if (reason == QSystemTrayIcon::DoubleClick) Q_EMIT Activated();
    // The bus knows no double click.
    if (m_isOnBus && reason == QSystemTrayIcon::Trigger) Q_EMIT Clicked();
  });
  connect(m_icon.get(), &QSystemTrayIcon::messageClicked, this, &TNotificationArea::MessageClicked);
  m_icon->setToolTip(m_hint);
  m_icon->show();
}

bool TSystemNotificationArea::IsThere() const {
  if (m_icon == nullptr) return false;
  // What the toolkit says of the bus is what it found there first.
  return m_isOnBus ? StatusNotifier::HasHost() : QSystemTrayIcon::isSystemTrayAvailable();
}

void TSystemNotificationArea::SetHint(const QString &hint) {
  m_hint = WithoutMarkup(hint);
  if (m_icon != nullptr) m_icon->setToolTip(m_hint);
}

void TSystemNotificationArea::Tell(const QString &title, const QString &text) {
  if (m_icon == nullptr) return;
  if (!m_isOnBus) {
    m_icon->showMessage(title, text);
    return;
  }
  if (m_notifications == nullptr) m_notifications = new TDesktopNotifications(this);
  m_notifications->Show({.title = title,
                         .text = text,
                         .clicked = [this] { Q_EMIT MessageClicked(); },
                         .failed = [this] { Q_EMIT NotTold(); }});
}
