#include "platform/desktop_notifications.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QVariantMap>

namespace {

constexpr const char *Service = "org.freedesktop.Notifications";
constexpr const char *Path = "/org/freedesktop/Notifications";
const QString DefaultAction = QStringLiteral("default");
constexpr int UntilTheDesktopSays = -1;

}  // namespace

TDesktopNotifications::TDesktopNotifications(QObject *parent) : QObject(parent) {
  QDBusConnection bus = QDBusConnection::sessionBus();
  bus.connect(QLatin1String(Service), QLatin1String(Path), QLatin1String(Service), QStringLiteral("ActionInvoked"),
              this, SLOT(OnActionInvoked(uint, QString)));
  bus.connect(QLatin1String(Service), QLatin1String(Path), QLatin1String(Service), QStringLiteral("NotificationClosed"),
              this, SLOT(OnClosed(uint, uint)));
}

void TDesktopNotifications::Show(TMessage message) {
  QDBusMessage call = QDBusMessage::createMethodCall(QLatin1String(Service), QLatin1String(Path),
                                                     QLatin1String(Service), QStringLiteral("Notify"));
  // Many desktops read the text as markup, so that a page could slip in links and pictures.
  call << QStringLiteral("Zarvela") << uint(0) << QStringLiteral("zarvela") << message.title
       << message.text.toHtmlEscaped() << QStringList{DefaultAction, QString()}
       << QVariantMap{{QStringLiteral("desktop-entry"), QStringLiteral("zarvela")}} << UntilTheDesktopSays;
  auto *waiting = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call), this);
  connect(waiting, &QDBusPendingCallWatcher::finished, this, [this, waiting, message = std::move(message)] {
    const QDBusPendingReply<uint> reply = *waiting;
    waiting->deleteLater();
    if (reply.isValid()) {
      m_shown.insert(reply.value(), message);
    } else {
      if (message.failed) message.failed();
      if (message.closed) message.closed();
    }
  });
}

void TDesktopNotifications::OnActionInvoked(uint id, const QString &action) {
  const auto shown = m_shown.constFind(id);
  if (shown == m_shown.constEnd()) return;
  const TMessage message = *shown;
  if (action == DefaultAction && message.clicked) message.clicked();
  Forget(id);
}

void TDesktopNotifications::OnClosed(uint id, uint) {
  Forget(id);
}

void TDesktopNotifications::Forget(uint id) {
  const TMessage message = m_shown.take(id);
  if (message.closed) message.closed();
}
