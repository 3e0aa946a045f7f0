#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusServer>
#include <QDBusVirtualObject>
#include <QDir>
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
  QVariantMap status;
  TNamespaces settings;

  QString introspect(const QString &) const override { return {}; }
  bool handleMessage(const QDBusMessage &call, const QDBusConnection &bus) override {
    const bool isStatus = call.path() == QLatin1String("/org/a11y/bus") && call.member() == QLatin1String("GetAll");
    if (isStatus && !status.isEmpty()) bus.send(call.createReply(status));
    const bool isSettings = call.interface() == QLatin1String("org.freedesktop.portal.Settings");
    if (isSettings && !settings.isEmpty()) bus.send(call.createReply(QVariant::fromValue(settings)));
    return true;
  }
};

class TestDesktopWishes final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { qDBusRegisterMetaType<TNamespaces>(); }

  void Services_data() {
    Columns<QVariantMap, TNamespaces, bool, bool>("status", "settings", "assistive", "reduced");
    const auto status = [](const QVariant &enabled, bool reader) {
      return QVariantMap{{"IsEnabled", enabled}, {"ScreenReaderEnabled", reader}};
    };
    const auto motion = [](const QVariant &value) {
      return TNamespaces{{"org.freedesktop.appearance", {{"reduced-motion", value}}}};
    };
    const auto animations = [](bool on) {
      return TNamespaces{{"org.gnome.desktop.interface", {{"enable-animations", on}}}};
    };
    const QVariantMap silent;
    Row("nothing is wished", status(false, false), motion(0U), false, false);
    Row("assistive technology", status(true, false), motion(0U), true, false);
    Row("a screen reader", status(false, true), motion(0U), true, false);
    Row("reduced motion", status(false, false), motion(1U), false, true);
    Row("no animations", status(false, false), animations(false), false, true);
    Row("animations", status(false, false), animations(true), false, false);
    Row("other kinds of values", status(QVariantList{1}, false), motion("maybe"), false, false);
    Row("the first does not answer", silent, motion(1U), false, true);
    Row("the other does not answer", status(true, true), TNamespaces(), true, false);
  }
  void Services() {
    QFETCH(QVariantMap, status);
    QFETCH(TNamespaces, settings);
    TServices services;
    services.status = status;
    services.settings = settings;
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
    const bool answers = !services.status.isEmpty() && !services.settings.isEmpty();
    const TDesktopWishes wishes = TDesktopWishes::AskOn(bus, answers ? 20000 : 200);
    thread.quit();
    thread.wait();
    QDBusConnection::disconnectFromPeer(QStringLiteral("asks"));
    QTEST(wishes.assistiveTechnology, "assistive");
    QTEST(wishes.reducedMotion, "reduced");
  }

  void FilesAndVariables_data() {
    Columns<QByteArray, QByteArray, bool, bool>("file", "variable", "assistive", "reduced");
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
    QVERIFY(settings.open(QIODevice::WriteOnly));
    settings.write(file);
    settings.close();
    qputenv("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", variable);
    const TDesktopWishes wishes = TDesktopWishes::Ask();
    QTEST(wishes.assistiveTechnology, "assistive");
    QTEST(wishes.reducedMotion, "reduced");
  }
};

QTEST_GUILESS_MAIN(TestDesktopWishes)
#include "test_desktop_wishes.moc"
