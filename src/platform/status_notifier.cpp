#include "platform/status_notifier.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>

#include "platform/session_bus.h"

namespace {

const QString Watcher = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString Path = QStringLiteral("/StatusNotifierWatcher");
constexpr int Patience = 1000;  // milliseconds

QDBusMessage HostQuestion() {
  QDBusMessage ask = QDBusMessage::createMethodCall(Watcher, Path, QStringLiteral("org.freedesktop.DBus.Properties"),
                                                    QStringLiteral("Get"));
  ask << Watcher << QStringLiteral("IsStatusNotifierHostRegistered");
  return ask;
}
bool IsYes(const QDBusMessage &reply) {
  return reply.type() == QDBusMessage::ReplyMessage && !reply.arguments().isEmpty() &&
         reply.arguments().first().value<QDBusVariant>().variant().toBool();
}

}  // namespace

bool StatusNotifier::IsThere() {
  if (!HasSessionBus()) return false;
  const QDBusConnection bus = QDBusConnection::sessionBus();
  return bus.isConnected() && bus.interface()->isServiceRegistered(Watcher);
}

bool StatusNotifier::HasHost() {
  return IsThere() && IsYes(QDBusConnection::sessionBus().call(HostQuestion(), QDBus::Block, Patience));
}

TStatusNotifierWatch::TStatusNotifierWatch(QObject *parent) : QObject(parent) {
  if (!HasSessionBus()) return;
  QDBusConnection bus = QDBusConnection::sessionBus();
  m_watcher.setConnection(bus);
  m_watcher.setWatchMode(QDBusServiceWatcher::WatchForRegistration);
  m_watcher.addWatchedService(Watcher);
  connect(&m_watcher, &QDBusServiceWatcher::serviceRegistered, this, &TStatusNotifierWatch::Look);
  // Who takes the icons may be there before who shows them.
  bus.connect(Watcher, Path, Watcher, QStringLiteral("StatusNotifierHostRegistered"), this, SLOT(Look()));
}

void TStatusNotifierWatch::Look() {
  auto *waiting = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(HostQuestion()), this);
  connect(waiting, &QDBusPendingCallWatcher::finished, this, [this, waiting] {
    waiting->deleteLater();
    if (IsYes(waiting->reply())) Q_EMIT HostCame();
  });
}
