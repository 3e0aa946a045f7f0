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
class TestPolicy final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    m_f.Prepare();
    m_f.server.RoutePage("/parts", "Parts", Parts);
    m_f.server.RoutePage("/other", "Other", Parts);
  }
  void init() { m_f.Begin(); }
  void cleanup() { m_f.End(); }

  void Permissions_data() {
    QTest::addColumn<TPagePermissions>("permissions");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QStringList>("fetched");
    const QString all = QStringLiteral("plug-ins");
    QTest::newRow("all") << TPagePermissions{} << all << QStringList{"/i.png", "/s.mp3", "/v.mp4"};
    QTest::newRow("no images") << TPagePermissions{.images = false} << all << QStringList{"/s.mp3", "/v.mp4"};
    QTest::newRow("no sounds") << TPagePermissions{.sounds = false} << all << QStringList{"/i.png", "/v.mp4"};
    QTest::newRow("no videos") << TPagePermissions{.videos = false} << all << QStringList{"/i.png", "/s.mp3"};
    QTest::newRow("no plug-ins") << TPagePermissions{.plugIns = false} << QStringLiteral("no plug-ins")
                                 << QStringList{"/i.png", "/s.mp3", "/v.mp4"};
    QTest::newRow("no scripts") << TPagePermissions{.scripts = false} << QStringLiteral("Parts")
                                << QStringList{"/i.png", "/s.mp3", "/v.mp4"};
  }
  void Permissions() {
    QFETCH(TPagePermissions, permissions);
    QFETCH(QString, title);
    QFETCH(QStringList, fetched);
    TAnsweringPolicy policy;
    policy.permissions = permissions;
    policy.restrictedPath = QStringLiteral("/parts");
    policy.AnswerFor(m_f.Engine());
    TBrowserTab *tab = m_f.tabs->GetActivePage();
    m_f.Load(tab, QStringLiteral("/parts"));
    QTRY_COMPARE(tab->Title(), title);
    QTRY_COMPARE(Fetched(), fetched);
    QCOMPARE(tab->SecureZone(), TSecurityZone::Restricted);
    // What is asked of the page from outside is answered all the same.
    QString type;
    tab->Browser()->CollectProperties([&type](const TPageProperties &properties) { type = properties.contentType; });
    QTRY_COMPARE(type, QStringLiteral("text/html"));
    // Another page is another question.
    m_f.server.ForgetRequests();
    m_f.Load(tab, QStringLiteral("/other"));
    QTRY_COMPARE(tab->Title(), QStringLiteral("plug-ins"));
    QCOMPARE(Fetched(), (QStringList{"/i.png", "/s.mp3", "/v.mp4"}));
    QCOMPARE(tab->SecureZone(), TSecurityZone::Internet);
    m_f.Engine().SetPolicy(nullptr);
    m_f.Load(tab, QStringLiteral("/parts"));
    QTRY_COMPARE(tab->Title(), QStringLiteral("plug-ins"));
    QCOMPARE(tab->SecureZone(), TSecurityZone::LocalMachine);
  }

  void Cookies_data() {
    QTest::addColumn<bool>("allowed");
    QTest::addColumn<TLifetime>("refused");
    QTest::addColumn<QString>("kept");
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
    m_f.server.Route(folder + "/set",
                     TTestResponse{.body = "<title>Set</title><script>document.cookie='script=1'</script>",
                                   .headers = {{"Set-Cookie", "session=1"}, {"Set-Cookie", "stored=1; Max-Age=9999"}}});
    m_f.server.RoutePage(folder + "/sent", "Sent");
    TAnsweringPolicy policy;
    policy.cookies = allowed;
    policy.refused = refused;
    policy.AnswerFor(m_f.Engine());
    TBrowserTab *tab = m_f.tabs->GetActivePage();
    m_f.Load(tab, QString::fromLatin1(folder + "/set"));
    // The engine tells of a cookie's lifetime a moment after it was set.
    const auto sent = [&] {
      m_f.Load(tab, QString::fromLatin1(folder + "/sent"));
      QStringList cookies =
          QString::fromLatin1(m_f.server.Requests(folder + "/sent").last().Header("cookie")).split("; ");
      cookies.sort();
      return cookies.join("; ");
    };
    QTRY_COMPARE(sent(), kept);
    QCOMPARE(sent(), kept);
  }

  void UserAgent() {
    TAnsweringPolicy policy;
    policy.token = QStringLiteral("Token/1");
    for (const bool isAsked : {true, false}) {
      m_f.Engine().SetPolicy(isAsked ? &policy : nullptr);
      m_f.Load(m_f.tabs->GetActivePage(), QStringLiteral("/other"));
      QCOMPARE(m_f.server.Requests("/other").last().Header("user-agent").endsWith(" Token/1"), isAsked);
    }
  }

 private:
  // The parts that the server was asked for, each once.
  [[nodiscard]] QStringList Fetched() const {
    QStringList paths;
    for (const char *path : {"/i.png", "/s.mp3", "/v.mp4"}) {
      if (m_f.server.RequestCount(path) > 0) paths.append(QString::fromLatin1(path));
    }
    return paths;
  }

  TTabsFixture m_f;
};

int main(int argc, char **argv) {
  return RunWithEngine<TestPolicy>(argc, argv);
}

#include "test_policy.moc"
