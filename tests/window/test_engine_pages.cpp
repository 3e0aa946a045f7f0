#include <csignal>
#include <QAbstractButton>
#include <QLabel>
#include <QRegularExpression>
#include <QTcpServer>
#include <QWebEngineProfile>

#include "support/data_row.h"
#include "window/browser_fixture.h"

// What stands where there is no page to show: start page, load errors, certificates, a dead renderer.
class TestEnginePages final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    m.Begin();
    m.Server().RoutePage("/a", "Page A");
    m.Server().RoutePage("/b", "Page B");
    m.SecureServer().RoutePage("/", "Secure page");
  }

  void cleanup() { m.End(); }

  void StartPage() {
    QVERIFY(m.Open(TEngine::StartPageAddress()));
    QVERIFY(!m.Notice());
    QCOMPARE(m.Browser().LocationUrl(), TEngine::StartPageAddress());
    const QString text = m.Script(QStringLiteral("document.documentElement.outerHTML")).toString();
    QVERIFY(text.contains(m.Language().Text("PAGES", "StartIntro").toHtmlEscaped()));
    QVERIFY2(!text.contains(QLatin1String("{{")) && !text.contains(QLatin1String("UNDEFINED")), qPrintable(text));
    QVERIFY(!text.contains(QRegularExpression(QStringLiteral("(src|href)="))));
    // It is as light or dark as the window around it.
    const auto ground = [this] { return m.Script(QStringLiteral("getComputedStyle(document.body).backgroundColor")); };
    QCOMPARE(ground(), QStringLiteral("rgb(247, 249, 251)"));
    const QPalette light = QApplication::palette();
    QApplication::setPalette(QPalette(QColor(49, 54, 59)));
    QVERIFY(m.Open(TEngine::StartPageAddress()));
    QCOMPARE(ground(), QStringLiteral("rgb(27, 33, 40)"));
    QApplication::setPalette(light);
    // A page of the web cannot get at it.
    QVERIFY(m.OpenPath(QStringLiteral("/a")));
    m.Browser().EnginePage()->runJavaScript(QStringLiteral(
        "fetch('zarvela:start').then(() => document.title = 'got it', () => document.title = 'refused')"));
    QTRY_COMPARE(m.Browser().LocationName(), QStringLiteral("refused"));
    QVERIFY(m.Open(QStringLiteral("zarvela:other")));
    QVERIFY(m.Notice());
  }

  void LoadErrors_data() {
    Columns<QString, QString>("address", "key");
    Row("host", "http://nosuch.invalid/x", "ErrorHostNotFound");
    Row("refused", "closed", "ErrorRefused");
    Row("file", "/no/such/file.html", "ErrorNoSuchFile");
    Row("redirects", "/loop", "ErrorTooManyRedirects");
    Row("empty", "/drop", "ErrorEmptyResponse");
    Row("port", "http://127.0.0.1:1/", "ErrorUnsafePort");
    Row("status without a page", "/status/500", "ErrorServer");
    Row("nothing there", "/status/404", "ErrorPageNotFound");
  }

  void LoadErrors() {
    QFETCH(QString, address);
    QFETCH(QString, key);
    m.Server().Route("/loop", TTestResponse::Redirect("/loop"));
    m.Server().Route("/drop", TTestResponse{.dropConnection = true});
    m.Server().Route("/status/500", TTestResponse::Status(500));
    m.Server().Route("/status/404", TTestResponse::Status(404));
    if (address == QLatin1String("closed")) {
      QTcpServer free;
      QVERIFY(free.listen(QHostAddress::LocalHost));
      address = QStringLiteral("http://127.0.0.1:%1/").arg(free.serverPort());
    } else if (address.startsWith(u'/') && !address.startsWith(QLatin1String("/no"))) {
      address = m.Server().Url(address);
    }
    QVERIFY(m.OpenPath(QStringLiteral("/a")));
    m.ForgetEvents();
    QVERIFY(m.Open(address));
    QTRY_VERIFY(m.Notice());
    const QString asked = address.startsWith(u'/') ? QStringLiteral("file://") + address : address;
    QCOMPARE(m.Browser().LocationUrl(), asked);
    QString expected = m.Language().Text("PAGES", key.toLatin1().constData());
    expected = expected.contains(QLatin1String("%1"))
                   ? expected.arg(key == QLatin1String("ErrorServer") ? QStringLiteral("500") : QUrl(asked).host())
                   : expected;
    QCOMPARE(Text("lblNoticeText"), expected);
    QCOMPARE(m.Events().count(QStringLiteral("complete ") + asked), 1);
    // Nothing else is in the way of going back.
    m.Browser().GoBack();
    QTRY_COMPARE(m.Browser().LocationName(), QStringLiteral("Page A"));
    QTRY_VERIFY(!m.Notice());
  }

  void ServersOwnErrorPage() {
    m.Server().Route("/own", TTestResponse::Status(404, "<title>Own page</title>not here"));
    QVERIFY(m.OpenPath(QStringLiteral("/own")));
    QVERIFY(!m.Notice());
    QCOMPARE(m.Browser().LocationName(), QStringLiteral("Own page"));
  }

  void TryAgain() {
    const quint16 port = m.Server().Port();
    m.Server().Close();
    const QString address = m.Server().Url(QStringLiteral("/a"));
    QVERIFY(m.Open(address));
    QTRY_VERIFY(m.Notice());
    Press("cmdNoticePrimary");
    QSignalSpy done(&m.Browser(), &THalvexBrowser::DocumentComplete);
    QTRY_VERIFY(!done.isEmpty());
    QVERIFY(m.Notice());
    QVERIFY(m.Server().Listen(port));
    Press("cmdNoticePrimary");
    QTRY_COMPARE(m.Browser().LocationName(), QStringLiteral("Page A"));
    // The title may come before the page takes the notice's place.
    QTRY_VERIFY(!m.Notice());
    QVERIFY(!m.Browser().CanGoBack());
  }

  void ErrorsInTheHistory() {
    QVERIFY(m.OpenPath(QStringLiteral("/a")));
    QVERIFY(m.Open(QStringLiteral("http://nosuch.invalid/1")));
    QVERIFY(m.Open(QStringLiteral("http://nosuch.invalid/2")));
    QVERIFY(m.OpenPath(QStringLiteral("/b")));
    QVERIFY(!m.Notice());
    for (const QString &address : {QStringLiteral("http://nosuch.invalid/2"), QStringLiteral("http://nosuch.invalid/1"),
                                   m.Server().Url(QStringLiteral("/a"))}) {
      QVERIFY(m.Browser().CanGoBack());
      QSignalSpy done(&m.Browser(), &THalvexBrowser::DocumentComplete);
      m.Browser().GoBack();
      QVERIFY(!done.isEmpty() || done.wait(TBrowserFixture::LoadTime));
      QCOMPARE(m.Browser().LocationUrl(), address);
      QCOMPARE(m.Notice() != nullptr, address.contains(QLatin1String("nosuch")));
    }
  }

  void NoAddress_data() {
    Columns<QString, QString>("text", "key");
    Row("words", "hello world", "ErrorInvalidAddress");
    Row("scheme alone", "http://", "ErrorInvalidAddress");
    Row("unknown scheme", "foo:bar", "ErrorUnknownScheme");
  }

  void NoAddress() {
    QFETCH(QString, text);
    QFETCH(QString, key);
    QVERIFY(m.OpenPath(QStringLiteral("/a")));
    QVERIFY(m.Open(text));
    QVERIFY(m.Notice());
    QCOMPARE(m.Browser().LocationUrl(), text);
    QCOMPARE(Text("lblNoticeText"), m.Language().Text("PAGES", key.toLatin1().constData()));
    // Tried again, it fails again at once; the page behind it is left alone.
    const QSignalSpy done(&m.Browser(), &THalvexBrowser::DocumentComplete);
    m.Browser().Refresh();
    QCOMPARE(done.size(), 1);
    QVERIFY(m.Notice());
    QCOMPARE(m.Browser().LocationUrl(), text);
    QVERIFY(m.Browser().CanGoBack());
    m.Browser().GoBack();
    QVERIFY(!m.Notice());
    QCOMPARE(m.Browser().LocationUrl(), m.Server().Url(QStringLiteral("/a")));
  }

  void NoAddressFirst() {
    QVERIFY(m.Open(QStringLiteral("hello world")));
    QVERIFY(m.Notice());
    QVERIFY(!m.Browser().EnginePageIfAny());
    QVERIFY(!m.Browser().CanGoBack());
    m.Browser().GoBack();
    QVERIFY(m.OpenPath(QStringLiteral("/a")));
    QVERIFY(!m.Notice());
    QVERIFY(m.Open(QStringLiteral("hello world")));
    m.Browser().ShowBlank();
    QTRY_COMPARE(m.Browser().LocationUrl(), QStringLiteral("about:blank"));
    QVERIFY(!m.Notice());
  }

  void Certificate() {
    const QString address = m.SecureServer().Url(QStringLiteral("/"), QStringLiteral("localhost"));
    QSignalSpy lock(&m.Browser(), &THalvexBrowser::SecureLockIconChanged);
    QVERIFY(m.OpenPath(QStringLiteral("/a")));
    QVERIFY(m.Open(address));
    QTRY_VERIFY(m.Notice());
    QCOMPARE(m.SecureServer().RequestCount("/"), 0);
    QVERIFY(Text("lblNoticeText").contains(QLatin1String("localhost")));
    QVERIFY2(Text("lblNoticeDetails").contains(QLatin1String("Test server")), qPrintable(Text("lblNoticeDetails")));
    QVERIFY(lock.isEmpty());
    // No page can go on in the user's place.
    m.Browser().EnginePage()->runJavaScript(
        QStringLiteral("document.querySelectorAll('button,a').forEach(b => b.click())"));
    m.Browser().Refresh();
    QTRY_VERIFY(!m.Browser().EnginePage()->isLoading());
    QTRY_VERIFY(m.Notice());
    QCOMPARE(m.SecureServer().RequestCount("/"), 0);

    Press("cmdNoticePrimary");
    QTRY_COMPARE(m.Browser().LocationName(), QStringLiteral("Page A"));
    QTRY_VERIFY(!m.Notice());

    QVERIFY(m.Open(address));
    QTRY_VERIFY(m.Notice());
    Press("cmdNoticeSecondary");
    QTRY_COMPARE(m.Browser().LocationName(), QStringLiteral("Secure page"));
    QTRY_VERIFY(!m.Notice());
    QVERIFY(m.Engine().AcceptsCertificateErrors(QStringLiteral("LOCALHOST")));
    QVERIFY(!m.Engine().AcceptsCertificateErrors(QStringLiteral("127.0.0.1")));
    QCOMPARE(lock.last().first().value<TEncryptionLevel>(), TEncryptionLevel::Unknown);
    TPageProperties properties;
    m.Browser().CollectProperties([&](const TPageProperties &found) { properties = found; });
    QTRY_COMPARE(properties.encryptionLevel, TEncryptionLevel::Unknown);
    QVERIFY(properties.certificate.contains(QLatin1String("Test server")));
    QVERIFY(m.OpenPath(QStringLiteral("/a")));
    QCOMPARE(lock.last().first().value<TEncryptionLevel>(), TEncryptionLevel::None);
  }

  void CertificateOfAPart() {
    // A picture from a server with a bad certificate stays away without a word.
    m.Server().RoutePage("/part", "Part",
                         "<img src='" + m.SecureServer().Url(QStringLiteral("/i.png")).toLatin1() +
                             "' onerror=\"document.title='missing'\">");
    QVERIFY(m.OpenPath(QStringLiteral("/part")));
    QTRY_COMPARE(m.Browser().LocationName(), QStringLiteral("missing"));
    QVERIFY(!m.Notice());
    QCOMPARE(m.SecureServer().RequestCount("/i.png"), 0);
  }

  void DeadRenderer() {
    QVERIFY(m.OpenPath(QStringLiteral("/a")));
    QSignalSpy died(m.Browser().EnginePage(), &QWebEnginePage::renderProcessTerminated);
    ::kill(static_cast<pid_t>(m.Browser().EnginePage()->renderProcessPid()), SIGKILL);
    QTRY_COMPARE(died.size(), 1);
    QTRY_VERIFY(m.Notice());
    QCOMPARE(Text("lblNoticeText"), m.Language().Text("PAGES", "CrashText"));
    QCOMPARE(m.Browser().LocationUrl(), m.Server().Url(QStringLiteral("/a")));
    // Commands that would need the page answer without it.
    bool answered = false;
    m.Browser().CollectProperties([&](const TPageProperties &) { answered = true; });
    QVERIFY(answered);
    m.Browser().PrintPreview();
    m.Browser().FindOnPage();
    QCOMPARE(m.Server().RequestCount("/a"), 1);
    Press("cmdNoticePrimary");
    QTRY_COMPARE(m.Server().RequestCount("/a"), 2);
    QTRY_VERIFY(!m.Notice());
    QTRY_COMPARE(m.Script(QStringLiteral("document.title")).toString(), QStringLiteral("Page A"));

    // A renderer that dies in the middle of a load ends the load.
    m.Server().Route("/half",
                     TTestResponse{.body = "<title>Half</title>" + QByteArray(4000, 'x'), .stopAfterBytes = 2000});
    m.Browser().Navigate(m.Server().Url(QStringLiteral("/half")));
    QTRY_COMPARE(m.Browser().LocationName(), QStringLiteral("Half"));
    QSignalSpy done(&m.Browser(), &THalvexBrowser::DocumentComplete);
    ::kill(static_cast<pid_t>(m.Browser().EnginePage()->renderProcessPid()), SIGKILL);
    QTRY_VERIFY(m.Notice());
    QTRY_COMPARE(done.size(), 1);
  }

  void AcceptedLanguages() {
    QVERIFY(m.OpenPath(QStringLiteral("/a")));
    QCOMPARE(m.Server().Requests("/a").last().Header("accept-language"), QByteArray("en"));
  }

 private:
  [[nodiscard]] QString Text(const char *label) {
    const auto *found = m.Browser().findChild<QLabel *>(QLatin1String(label));
    return found ? found->text() : QString();
  }
  void Press(const char *button) {
    auto *found = m.Browser().findChild<QAbstractButton *>(QLatin1String(button));
    QVERIFY(found && found->isVisible());
    found->click();
  }

  TBrowserFixture m;
};

int main(int argc, char **argv) {
  return RunWithEngine<TestEnginePages>(argc, argv);
}

#include "test_engine_pages.moc"
