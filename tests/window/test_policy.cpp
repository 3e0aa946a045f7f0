#include "support/data_row.h"
#include "window/answering_policy.h"
#include "window/tabs_fixture.h"

namespace {

using TLifetime = TCookie::TLifetime;

// What the page tells once it knows that neither its video nor its sound plays: they were kept from it, or there is
// nothing to play.
constexpr const char *Parts =
    "<img src='/i.png'><script>let missing = 0; function miss() {"
    "if (++missing == 2) document.title = navigator.pdfViewerEnabled ? 'plug-ins' : 'no plug-ins' }</script>"
    "<video src='/v.mp4' preload='auto' onerror='miss()'></video>"
    "<audio src='/s.mp3' preload='auto' onerror='miss()'></audio>";

}  // namespace

// Each answer of the policy binds real pages.
class TestPolicy final : public QObject, private TTabsFixture {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    Prepare();
    server.RoutePage("/parts", "Parts", Parts);
    server.RoutePage("/other", "Other", Parts);
  }
  void init() { Begin(); }
  void cleanup() { End(); }

  void Permissions_data() {
    Columns<TPagePermissions, QString, QStringList>("permissions", "title", "fetched");
    const QString all = u"plug-ins"_s;
    const QStringList parts{"/i.png", "/s.mp3", "/v.mp4"};
    QTest::newRow("all") << TPagePermissions{} << all << parts;
    QTest::newRow("no images") << TPagePermissions{.images = false} << all << QStringList{"/s.mp3", "/v.mp4"};
    QTest::newRow("no sounds") << TPagePermissions{.sounds = false} << all << QStringList{"/i.png", "/v.mp4"};
    QTest::newRow("no videos") << TPagePermissions{.videos = false} << all << QStringList{"/i.png", "/s.mp3"};
    QTest::newRow("no plug-ins") << TPagePermissions{.plugIns = false} << u"no plug-ins"_s << parts;
    QTest::newRow("no scripts") << TPagePermissions{.scripts = false} << u"Parts"_s << parts;
  }
  void Permissions() {
    QFETCH(TPagePermissions, permissions);
    QFETCH(QString, title);
    QFETCH(QStringList, fetched);
    TAnsweringPolicy policy;
    policy.permissions = permissions;
    policy.restrictedPath = u"/parts"_s;
    policy.AnswerFor(Engine());
    TBrowserTab *tab = tabs->GetActivePage();
    Load(tab, u"/parts"_s);
    QTRY_COMPARE(tab->Title(), title);
    QTRY_COMPARE(Fetched(), fetched);
    QCOMPARE(tab->SecureZone(), TSecurityZone::Restricted);
    // What is asked of the page from outside is answered all the same.
    QString type;
    tab->Browser()->CollectProperties([&type](const TPageProperties &properties) { type = properties.contentType; });
    QTRY_COMPARE(type, u"text/html"_s);
    // Another page is another question.
    server.ForgetRequests();
    Load(tab, u"/other"_s);
    QTRY_COMPARE(tab->Title(), u"plug-ins"_s);
    QCOMPARE(Fetched(), (QStringList{"/i.png", "/s.mp3", "/v.mp4"}));
    QCOMPARE(tab->SecureZone(), TSecurityZone::Internet);
    Engine().SetPolicy(nullptr);
    Load(tab, u"/parts"_s);
    QTRY_COMPARE(tab->Title(), u"plug-ins"_s);
    QCOMPARE(tab->SecureZone(), TSecurityZone::LocalMachine);
  }

  void Cookies_data() {
    Columns<bool, TLifetime, QString>("allowed", "refused", "kept");
    QTest::newRow("all") << true << TLifetime::NotTold << "script=1; session=1; stored=1";
    QTest::newRow("none") << false << TLifetime::NotTold << "";
    QTest::newRow("for the session") << true << TLifetime::Stored << "script=1; session=1";
    QTest::newRow("stored ones") << true << TLifetime::Session << "stored=1";
  }
  void Cookies() {
    QFETCH(bool, allowed);
    QFETCH(TLifetime, refused);
    QFETCH(QString, kept);
    // The profile outlives the row, so every row has a folder of its own.
    const QByteArray folder = '/' + QByteArray(QTest::currentDataTag()).replace(' ', '_');
    server.Route(folder + "/set",
                 TTestResponse{.body = "<title>Set</title><script>document.cookie='script=1'</script>",
                               .headers = {{"Set-Cookie", "session=1"}, {"Set-Cookie", "stored=1; Max-Age=9999"}}});
    server.RoutePage(folder + "/sent", "Sent");
    TAnsweringPolicy policy;
    policy.cookies = allowed;
    policy.refused = refused;
    policy.AnswerFor(Engine());
    TBrowserTab *tab = tabs->GetActivePage();
    Load(tab, QString::fromLatin1(folder + "/set"));
    // The engine tells of a cookie's lifetime a moment after it was set.
    const auto sent = [&] {
      Load(tab, QString::fromLatin1(folder + "/sent"));
      QStringList cookies = QString::fromLatin1(server.Requests(folder + "/sent").last().Header("cookie")).split("; ");
      cookies.sort();
      return cookies.join("; ");
    };
    QTRY_COMPARE(sent(), kept);
    QCOMPARE(sent(), kept);
  }

  void UserAgent() {
    TAnsweringPolicy policy;
    policy.token = u"Token/1"_s;
    for (const bool isAsked : {true, false}) {
      Engine().SetPolicy(isAsked ? &policy : nullptr);
      Load(tabs->GetActivePage(), u"/other"_s);
      QCOMPARE(server.Requests("/other").last().Header("user-agent").endsWith(" Token/1"), isAsked);
    }
  }

 private:
  // The parts that the server was asked for, each once.
  [[nodiscard]] QStringList Fetched() const {
    QStringList paths;
    for (const char *path : {"/i.png", "/s.mp3", "/v.mp4"}) {
      if (server.RequestCount(path) > 0) paths.append(QString::fromLatin1(path));
    }
    return paths;
  }
};

ENGINE_MAIN(TestPolicy)
#include "test_policy.moc"
