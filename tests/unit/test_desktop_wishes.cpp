#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusServer>
#include <QDBusVirtualObject>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QMap>
#include <QTest>
#include <QThread>

#include "platform/desktop_wishes.h"
#include "support/data_row.h"

using TNamespaces = QMap<QString, QVariantMap>;
Q_DECLARE_METATYPE(TNamespaces)

// Answers as the desktop's services do; what it has no answer for it leaves waiting.
class TServices final : public QDBusVirtualObject {
 public:
  std::optional<QVariantMap> status;
  std::optional<TNamespaces> settings;

  QString introspect(const QString &) const override { return {}; }
  bool handleMessage(const QDBusMessage &call, const QDBusConnection &bus) override {
    const bool isStatus = call.path() == QLatin1String("/org/a11y/bus") && call.member() == QLatin1String("GetAll");
    const bool isSettings = call.interface() == QLatin1String("org.freedesktop.portal.Settings") &&
                            call.member() == QLatin1String("ReadAll");
    if (isStatus && status) bus.send(call.createReply(QVariant::fromValue(*status)));
    if (isSettings && settings) bus.send(call.createReply(QVariant::fromValue(*settings)));
    return true;
  }
};

class TestDesktopWishes final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { qDBusRegisterMetaType<TNamespaces>(); }

  void Services_data() {
    Columns<bool, QVariantMap, bool, TNamespaces, bool, bool>("hasStatus", "status", "hasSettings", "settings",
                                                              "assistive", "reduced");
    const QString appearance = QStringLiteral("org.freedesktop.appearance");
    const QString gnome = QStringLiteral("org.gnome.desktop.interface");
    const TNamespaces none;
    const auto flags = [](bool enabled, bool reader) {
      return QVariantMap{{"IsEnabled", enabled}, {"ScreenReaderEnabled", reader}};
    };
    const auto motion = [&](uint value) { return TNamespaces{{appearance, {{"reduced-motion", value}}}}; };
    const auto animations = [&](bool on) { return TNamespaces{{gnome, {{"enable-animations", on}}}}; };
    Row("nothing is wished", true, flags(false, false), true, motion(0), false, false);
    Row("assistive technology", true, flags(true, false), true, none, true, false);
    Row("a screen reader", true, flags(false, true), true, none, true, false);
    Row("reduced motion", true, flags(false, false), true, motion(1), false, true);
    Row("a number of later days", true, flags(false, false), true, motion(2), false, false);
    Row("no animations", true, flags(false, false), true, animations(false), false, true);
    Row("animations", true, flags(false, false), true, animations(true), false, false);
    Row("another kind of value", true, QVariantMap{{"IsEnabled", "maybe"}}, true,
        TNamespaces{{appearance, {{"reduced-motion", "maybe"}}}}, true, false);
    Row("the first does not answer", false, QVariantMap(), true, motion(1), false, true);
    Row("the other does not answer", true, flags(true, true), false, none, true, false);
    Row("nobody answers", false, QVariantMap(), false, none, false, false);
  }
  void Services() {
    QFETCH(bool, hasStatus);
    QFETCH(QVariantMap, status);
    QFETCH(bool, hasSettings);
    QFETCH(TNamespaces, settings);
    TServices services;
    if (hasStatus) services.status = status;
    if (hasSettings) services.settings = settings;
    // A connection of its own between the two; the services answer on a thread, as the one that asks waits.
    QThread thread;
    QDBusServer server(QStringLiteral("unix:tmpdir=") + QDir::tempPath());
    server.setAnonymousAuthenticationAllowed(true);
    std::optional<QDBusConnection> other;
    connect(&server, &QDBusServer::newConnection, &server, [&](QDBusConnection peer) {
      peer.registerVirtualObject(QStringLiteral("/"), &services, QDBusConnection::SubPath);
      other = peer;
    });
    const QDBusConnection bus = QDBusConnection::connectToPeer(server.address(), QStringLiteral("asks"));
    QTRY_VERIFY(other);
    services.moveToThread(&thread);
    thread.start();
    QElapsedTimer clock;
    clock.start();
    const bool answers = hasStatus && hasSettings;
    const TDesktopWishes wishes = TDesktopWishes::AskOn(bus, answers ? 20000 : 200);
    // Neither waits for the other's time to be over first.
    if (!answers) QVERIFY(clock.elapsed() < 5000);
    thread.quit();
    thread.wait();
    QDBusConnection::disconnectFromPeer(QStringLiteral("asks"));
    QTEST(wishes.assistiveTechnology, "assistive");
    QTEST(wishes.reducedMotion, "reduced");
  }

  void WithoutABus() {
    const TDesktopWishes wishes = TDesktopWishes::AskOn(QDBusConnection(QStringLiteral("none")), 20000);
    QVERIFY(!wishes.assistiveTechnology && !wishes.reducedMotion);
  }

  void FilesAndVariables_data() {
    Columns<QByteArray, QByteArray, bool, bool>("file", "variable", "assistive", "reduced");
    Row("nothing", QByteArray(), QByteArray(), false, false);
    Row("off in the file", QByteArray("[Settings]\ngtk-enable-animations=0\n"), QByteArray(), false, true);
    Row("off, spelled out", QByteArray("[Settings]\ngtk-enable-animations=False\n"), QByteArray(), false, true);
    Row("on in the file", QByteArray("[Settings]\ngtk-enable-animations=1\n"), QByteArray(), false, false);
    Row("no settings", QByteArray("\0\xff[[==\n", 7), QByteArray(), false, false);
    Row("the variable", QByteArray(), QByteArray("1"), true, false);
  }
  void FilesAndVariables() {
    QFETCH(QByteArray, file);
    QFETCH(QByteArray, variable);
    const QDir folder(qEnvironmentVariable("XDG_CONFIG_HOME") + QStringLiteral("/gtk-3.0"));
    QVERIFY(folder.mkpath(QStringLiteral(".")));
    QFile settings(folder.filePath(QStringLiteral("settings.ini")));
    if (file.isEmpty()) {
      settings.remove();
    } else {
      QVERIFY(settings.open(QIODevice::WriteOnly));
      settings.write(file);
      settings.close();
    }
    qputenv("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", variable);
    const TDesktopWishes wishes = TDesktopWishes::Ask();
    QTEST(wishes.assistiveTechnology, "assistive");
    QTEST(wishes.reducedMotion, "reduced");
  }
};

QTEST_GUILESS_MAIN(TestDesktopWishes)
#include "test_desktop_wishes.moc"
