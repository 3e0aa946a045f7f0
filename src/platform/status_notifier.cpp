#include "platform/status_notifier.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusVariant>

#include "platform/session_bus.h"

namespace {

const QString Watcher = QStringLiteral("org.kde.StatusNotifierWatcher");
constexpr int Patience = 1000;  // milliseconds

}  // namespace

bool StatusNotifier::IsThere() {
  if (!HasSessionBus()) return false;
  const QDBusConnection bus = QDBusConnection::sessionBus();
  return bus.isConnected() && bus.interface()->isServiceRegistered(Watcher);
}

bool StatusNotifier::HasHost() {
  if (!IsThere()) return false;
  QDBusMessage ask =
      QDBusMessage::createMethodCall(Watcher, QStringLiteral("/StatusNotifierWatcher"),
                                     QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
  ask << Watcher << QStringLiteral("IsStatusNotifierHostRegistered");
  const QDBusMessage reply = QDBusConnection::sessionBus().call(ask, QDBus::Block, Patience);
  return reply.type() == QDBusMessage::ReplyMessage && !reply.arguments().isEmpty() &&
         reply.arguments().first().value<QDBusVariant>().variant().toBool();
}
