#include "platform/desktop_wishes.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingReply>
#include <QMap>
#include <QStandardPaths>
#include <QVariantMap>

#include "platform/session_bus.h"
#include "store/ini_file.h"

namespace {

constexpr int Patience = 60;  // milliseconds; a service that runs answers within one

using TNamespaces = QMap<QString, QVariantMap>;

const QString Appearance = QStringLiteral("org.freedesktop.appearance");
const QString GnomeInterface = QStringLiteral("org.gnome.desktop.interface");

// A service that does not run yet is not started for this: that alone could take a second.
QDBusPendingCall AskService(const QDBusConnection &bus, QDBusMessage call, const QVariant &argument, int patience) {
  call.setAutoStartService(false);
  call << argument;
  return bus.asyncCall(call, patience);
}

// Where desktops leave the same choice for programs that ask no portal.
bool ToolkitFileStopsMotion() {
  const QString path =
      QStandardPaths::locate(QStandardPaths::GenericConfigLocation, QStringLiteral("gtk-3.0/settings.ini"));
  TIniFile file;
  if (path.isEmpty() || !file.Load(path)) return false;
  const QString value = file.Value(QStringLiteral("Settings"), QStringLiteral("gtk-enable-animations")).toLower();
  return value == QLatin1String("0") || value == QLatin1String("false");
}

}  // namespace

TDesktopWishes TDesktopWishes::Ask() {
  TDesktopWishes wishes;
  if (HasSessionBus()) wishes = AskOn(QDBusConnection::sessionBus(), Patience);
  // The same word makes the toolkit serve assistive technology without being asked.
  if (!qEnvironmentVariableIsEmpty("QT_LINUX_ACCESSIBILITY_ALWAYS_ON")) wishes.assistiveTechnology = true;
  if (ToolkitFileStopsMotion()) wishes.reducedMotion = true;
  return wishes;
}

TDesktopWishes TDesktopWishes::AskOn(const QDBusConnection &bus, int patience) {
  if (!bus.isConnected()) return {};
  QDBusPendingReply<QVariantMap> status = AskService(
      bus,
      QDBusMessage::createMethodCall(QStringLiteral("org.a11y.Bus"), QStringLiteral("/org/a11y/bus"),
                                     QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("GetAll")),
      QStringLiteral("org.a11y.Status"), patience);
  QDBusPendingCall settings = AskService(
      bus,
      QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.portal.Desktop"),
                                     QStringLiteral("/org/freedesktop/portal/desktop"),
                                     QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("ReadAll")),
      QStringList{Appearance, GnomeInterface}, patience);
  // Both have the same time: they are under way together.
  status.waitForFinished();
  settings.waitForFinished();

  TDesktopWishes wishes;
  if (status.isValid()) {
    const QVariantMap properties = status.value();
    wishes.assistiveTechnology = properties.value(QStringLiteral("IsEnabled")).toBool() ||
                                 properties.value(QStringLiteral("ScreenReaderEnabled")).toBool();
  }
  if (const QDBusMessage answer = settings.reply(); answer.signature() == QLatin1String("a{sa{sv}}")) {
    const auto namespaces = qdbus_cast<TNamespaces>(answer.arguments().value(0));
    const QVariant motion = namespaces.value(Appearance).value(QStringLiteral("reduced-motion"));
    const QVariant animations = namespaces.value(GnomeInterface).value(QStringLiteral("enable-animations"));
    wishes.reducedMotion = motion.toUInt() == 1 || (animations.isValid() && !animations.toBool());
  }
  return wishes;
}
