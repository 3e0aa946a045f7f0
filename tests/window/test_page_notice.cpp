#include <csignal>
#include <QAbstractButton>
#include <QLabel>
#include <QTcpServer>

#include "support/data_row.h"
#include "window/browser_fixture.h"

// What stands where there is no page to show: load errors, certificates, a dead renderer.
class TestPageNotice final : public QObject, private TBrowserFixture {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    Begin();
    Server().RoutePage("/a", "Page A");
    Server().RoutePage("/b", "Page B", "b");
    SecureServer().RoutePage("/", "Secure page");
  }

  void cleanup() { End(); }

  void LoadErrors_data() {
    Columns<QString, QString>("address", "key");
    Row("host", "http://nosuch.invalid/x", "ErrorHostNotFound");
    Row("refused", "closed", "ErrorRefused");
    Row("file", "/no/such/file.html", "ErrorNoSuchFile");
    Row("redirects", "/loop", "ErrorTooManyRedirects");
    Row("empty", "/drop", "ErrorEmptyResponse");
    Row("port", "http://127.0.0.1:1/", "ErrorUnsafePort");
    Row("status without a page", "/500", "ErrorServer");
    Row("nothing there", "/404", "ErrorPageNotFound");
  }

  void LoadErrors() {
    QFETCH(QString, address);
    QFETCH(QString, key);
    Server().Route("/loop", TTestResponse::Redirect("/loop"));
    Server().Route("/drop", TTestResponse{.dropConnection = true});
    Server().Route("/500", TTestResponse::Status(500));
    Server().Route("/404", TTestResponse::Status(404));
    if (address == u"closed"_s) {
      QTcpServer free;
      QVERIFY(free.listen(QHostAddress::LocalHost));
      address = u"http://127.0.0.1:%1/"_s.arg(free.serverPort());
    } else if (address.startsWith(u'/') && !address.startsWith(u"/no"_s)) {
      address = Server().Url(address);
    }
    QVERIFY(OpenPath(u"/a"_s));
    ForgetEvents();
    QVERIFY(Fails(address));
    const QString asked = address.startsWith(u'/') ? u"file://"_s + address : address;
    QCOMPARE(Browser().LocationUrl(), asked);
    QString expected = Language().Text("PAGES", key.toLatin1().constData());
    QCOMPARE(Text("lblNoticeText"), expected.replace(u"%1"_s, key == u"ErrorServer"_s ? u"500"_s : QUrl(asked).host()));
    QCOMPARE(Events().count(u"complete "_s + asked), 1);
    // Nothing else is in the way of going back.
    Browser().GoBack();
    QVERIFY(Shows(u"Page A"_s));
  }

  void TryAgain() {
    const quint16 port = Server().Port();
    Server().Close();
    QVERIFY(Fails(Server().Url(u"/a"_s)));
    QVERIFY(Completes([this] { Press("cmdNoticePrimary"); }) && Notice());
    QVERIFY(Server().Listen(port));
    Press("cmdNoticePrimary");
    QVERIFY(Shows(u"Page A"_s));
    QVERIFY(!Browser().CanGoBack());
  }

  void ErrorsInTheHistory() {
    QVERIFY(OpenPath(u"/a"_s));
    QVERIFY(Open(u"http://nosuch.invalid/1"_s));
    QVERIFY(Open(u"http://nosuch.invalid/2"_s));
    // A server's own words for a failure are a page.
    Server().Route("/own", TTestResponse::Status(404, "<title>Own page</title>not here"));
    QVERIFY(OpenPath(u"/own"_s) && Shows(u"Own page"_s));
    for (const QString &address : {u"http://nosuch.invalid/2"_s, u"http://nosuch.invalid/1"_s, Server().Url(u"/a"_s)}) {
      QVERIFY(Browser().CanGoBack());
      QVERIFY(Completes([this] { Browser().GoBack(); }));
      QCOMPARE(Browser().LocationUrl(), address);
      QCOMPARE(Notice() != nullptr, address.contains(u"nosuch"_s));
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
    QVERIFY(OpenPath(u"/a"_s));
    QVERIFY(Fails(text));
    QCOMPARE(Browser().LocationUrl(), text);
    QCOMPARE(Text("lblNoticeText"), Language().Text("PAGES", key.toLatin1().constData()));
    // Tried again, it fails again at once; the page behind it is left alone.
    const QSignalSpy done(&Browser(), &THalvexBrowser::DocumentComplete);
    Browser().Refresh();
    QVERIFY(done.size() == 1 && Notice());
    QCOMPARE(Browser().LocationUrl(), text);
    QVERIFY(Browser().CanGoBack());
    Browser().GoBack();
    QVERIFY(!Notice());
    QCOMPARE(Browser().LocationUrl(), Server().Url(u"/a"_s));
  }

  void NoAddressFirst() {
    QVERIFY(Fails(u"hello world"_s));
    QVERIFY(!Browser().EnginePageIfAny());
    QVERIFY(!Browser().CanGoBack());
    Browser().GoBack();
    QVERIFY(OpenPath(u"/a"_s));
    QVERIFY(!Notice());
    QVERIFY(Open(u"hello world"_s));
    Browser().ShowBlank();
    QTRY_COMPARE(Browser().LocationUrl(), u"about:blank"_s);
    QVERIFY(!Notice());
  }

  void Certificate() {
    const QString address = SecureServer().Url(u"/"_s, u"localhost"_s);
    QVERIFY(OpenPath(u"/a"_s));
    QVERIFY(Fails(address));
    QCOMPARE(SecureServer().RequestCount("/"), 0);
    QVERIFY(Text("lblNoticeText").contains(u"localhost"_s));
    QVERIFY(Text("lblNoticeDetails").contains(u"Test server"_s));
    // No page can go on in the user's place.
    Run(u"document.querySelectorAll('button,a').forEach(b => b.click())"_s);
    Browser().Refresh();
    QTRY_VERIFY(!Browser().EnginePage()->isLoading());
    QTRY_VERIFY(Notice());
    QCOMPARE(SecureServer().RequestCount("/"), 0);

    Press("cmdNoticePrimary");
    QVERIFY(Shows(u"Page A"_s));

    QVERIFY(Fails(address));
    // A click that was meant for the page lets nobody in.
    auto *letIn = Browser().findChild<QAbstractButton *>(u"cmdNoticeSecondary"_s);
    QTest::mouseClick(letIn, Qt::LeftButton);
    QVERIFY(!letIn->isEnabled() && !Engine().Certificates().Has(u"localhost"_s));
    Press("cmdNoticeSecondary");
    QVERIFY(Shows(u"Secure page"_s));
    QVERIFY(Engine().Certificates().Has(u"LOCALHOST"_s));
    QVERIFY(!Engine().Certificates().Has(u"127.0.0.1"_s));
    TPageProperties properties;
    Browser().CollectProperties([&](const TPageProperties &found) { properties = found; });
    QTRY_COMPARE(properties.encryptionLevel, TEncryptionLevel::Unknown);
    QVERIFY(properties.certificate.contains(u"Test server"_s));

    // Taken back, it is asked about again, although the engine itself would go on.
    Engine().Certificates().Remove(u"Localhost"_s);
    const int requests = SecureServer().RequestCount("/");
    QVERIFY(Fails(address));
    QVERIFY(Text("lblNoticeDetails").contains(u"Test server"_s));
    QCOMPARE(SecureServer().RequestCount("/"), requests);
    Press("cmdNoticeSecondary");
    QVERIFY(Shows(u"Secure page"_s));
  }

  void CertificateOfAPart() {
    // A picture from a server with a bad certificate stays away without a word.
    Server().RoutePage(
        "/part", "Part",
        "<img src='" + SecureServer().Url(u"/i.png"_s).toLatin1() + "' onerror=\"document.title='missing'\">");
    QVERIFY(OpenPath(u"/part"_s));
    QTRY_COMPARE(Browser().LocationName(), u"missing"_s);
    QVERIFY(!Notice());
    QCOMPARE(SecureServer().RequestCount("/i.png"), 0);
  }

  void DeadRenderer() {
    QVERIFY(OpenPath(u"/a"_s));
    KillRenderer();
    QCOMPARE(Text("lblNoticeText"), Language().Text("PAGES", "CrashText"));
    QCOMPARE(Browser().LocationUrl(), Server().Url(u"/a"_s));
    // Commands that would need the page answer without it.
    bool answered = false;
    Browser().CollectProperties([&](const TPageProperties &) { answered = true; });
    QVERIFY(answered);
    Browser().PrintPreview();
    Browser().FindOnPage();
    QCOMPARE(Server().RequestCount("/a"), 1);
    Press("cmdNoticePrimary");
    QTRY_COMPARE(Server().RequestCount("/a"), 2);
    QTRY_VERIFY(!Notice());
    QTRY_COMPARE(Script(u"document.title"_s).toString(), u"Page A"_s);

    // A renderer that dies in the middle of a load ends the load.
    Server().Route("/half",
                   TTestResponse{.body = "<title>Half</title>" + QByteArray(4000, 'x'), .stopAfterBytes = 2000});
    Browser().Navigate(Server().Url(u"/half"_s));
    QTRY_COMPARE(Browser().LocationName(), u"Half"_s);
    QVERIFY(Completes([this] { KillRenderer(); }));
  }

 private:
  [[nodiscard]] bool Fails(const QString &address) {
    return Open(address) && QTest::qWaitFor([this] { return Notice() != nullptr; });
  }
  // The title may come before the page takes the notice's place.
  [[nodiscard]] bool Shows(const QString &title) {
    return QTest::qWaitFor([&] { return Browser().LocationName() == title && !Notice(); });
  }
  [[nodiscard]] QString Text(const char *label) {
    const auto *found = Browser().findChild<QLabel *>(QLatin1String(label));
    return found ? found->text() : QString();
  }
  void KillRenderer() {
    ::kill(static_cast<pid_t>(Browser().EnginePage()->renderProcessPid()), SIGKILL);
    QTRY_VERIFY(Notice());
  }
  void Press(const char *button) {
    auto *found = Browser().findChild<QAbstractButton *>(QLatin1String(button));
    QVERIFY(found && found->isVisible());
    QTRY_VERIFY(found->isEnabled());
    found->click();
  }
  [[nodiscard]] QString Url(const char *path) { return Server().Url(QString::fromLatin1(path)); }
};

ENGINE_MAIN(TestPageNotice)
#include "test_page_notice.moc"
