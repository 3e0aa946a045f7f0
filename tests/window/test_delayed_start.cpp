#include <QDir>
#include <QFile>

#include "app/later_home_page.h"
#include "browser/tabs/home_page.h"
#include "platform/program_folders.h"
#include "support/data_row.h"
#include "window/main_window_fixture.h"

// The pages that a start opens once the window is shown. Addresses are paths on the local server.
class TestDelayedStart final : public QObject {
  Q_OBJECT

 private Q_SLOTS:

  void initTestCase() {
    m_f.Prepare();
    for (const char *path : {"/home", "/own", "/a", "/b", "/c", "/maker-ext"}) m_f.server.RoutePage(path, path);
    QFile product(ProgramFolders::UserData() + QStringLiteral("/product.ini"));
    QVERIFY(product.open(QIODevice::WriteOnly));
    product.write("[Addresses]\nDefaultHomePage=" + m_f.server.Url(QStringLiteral("/home")).toUtf8() +
                  "\nStartupPage=" + m_f.server.Url(QStringLiteral("/maker-%s")).toUtf8() + '\n');
  }
  void init() { m_f.Begin(); }
  void cleanup() { m_f.End(); }

  void Opens_data() {
    QTest::addColumn<QString>("mode");
    QTest::addColumn<QString>("home");      // the user's own
    QTest::addColumn<QStringList>("kept");  // what the modes with a list or a group have in store
    QTest::addColumn<QString>("once");      // StartupPage
    QTest::addColumn<QString>("argument");  // of the command line
    QTest::addColumn<QStringList>("pages");
    using L = QStringList;
    // The maker's page comes only when something of the user's own was opened.
    Row("blank", "Blank", "", L{}, "", "", L{"blank"});
    Row("default home page", "Home", "/home", L{}, "", "", L{"/home"});
    Row("own home page", "Home", "/own", L{}, "", "", L{"/own", "/maker-ext"});
    Row("group", "HalvexGroup", "", L{"/a", "/b"}, "", "", L{"/a", "/maker-ext", "/b"});
    Row("group beside another page", "HalvexGroup", "", L{"/a", "/b"}, "/c", "", L{"/c", "/maker-ext", "/a", "/b"});
    Row("no group", "HalvexGroup", "", L{}, "", "", L{""});
    Row("last pages", "Last", "", L{"/c", "/b", "/a"}, "", "", L{"/c", "/b", "/a", "/maker-ext"});
    Row("the default home page among the last", "Last", "", L{"/a", "/home"}, "", "", L{"/a", "/home"});
    Row("argument", "Blank", "", L{}, "", "/a", L{"blank", "/a", "/maker-ext"});
    Row("home page and argument", "Home", "/own", L{}, "", "/a", L{"/own", "/a", "/maker-ext"});
    Row("last pages and argument", "Last", "", L{"/b"}, "", "/a", L{"/b", "/a", "/maker-ext"});
    Row("page for one start", "Blank", "", L{}, "/c", "/a", L{"/c", "blank", "/a", "/maker-ext"});
  }

  void Opens() {
    QFETCH(QString, mode);
    QFETCH(QString, home);
    QFETCH(QStringList, kept);
    QFETCH(QString, once);
    QFETCH(QString, argument);
    const auto url = [this](const QString &path) { return path.isEmpty() ? path : m_f.server.Url(path); };
    TZVOptions options(*m_f.store);
    options.Set(Setting::StartupMode, mode);
    options.Set(Setting::StartupPage, url(once));
    options.Set(Setting::CommandLine, url(argument));
    HomePage::Choose(*m_f.store, url(home));
    TNamedAddresses sites{{QStringLiteral("url1"), QStringLiteral("left over from another mode")}};
    if (mode == QStringLiteral("Last")) {
      sites.clear();
      for (const QString &path : kept) sites.prepend({QStringLiteral("url%1").arg(sites.size() + 1), url(path)});
    } else if (!kept.isEmpty()) {
      options.Set(Setting::StartupHalvexGroup, WriteGroup(kept));
    }
    options.SetLastOpenSites(sites);
    Start();
    QTEST(Pages(), "pages");
    QVERIFY(options.Get(Setting::StartupPage).isEmpty() && options.Get(Setting::CommandLine).isEmpty());
    // A list that no mode needs does not outlive the window.
    m_f.window->CloseWithoutAsking();
    m_f.window.reset();
    QCOMPARE(options.LastOpenSites().isEmpty(), mode != QStringLiteral("Last"));
  }

  void GroupTakesAllPlaces_data() {
    QTest::addColumn<QString>("mode");
    QTest::addColumn<bool>("closeFirst");
    for (const char *mode : {"Home", "Blank", "Last", "HalvexGroup"}) {
      for (const bool closeFirst : {false, true}) {
        QTest::addRow("%s%s", mode, closeFirst ? ", HGCloseFirst" : "") << QString::fromLatin1(mode) << closeFirst;
      }
    }
  }

  // A group on the command line takes the place of what the mode opened, whatever the mode and HGCloseFirst are.
  void GroupTakesAllPlaces() {
    QFETCH(QString, mode);
    QFETCH(bool, closeFirst);
    TZVOptions options(*m_f.store);
    options.Set(Setting::StartupMode, mode);
    options.Set(Setting::HGCloseFirst, closeFirst);
    options.Set(Setting::CommandLine, WriteGroup({QStringLiteral("/a"), QStringLiteral("/b")}));
    options.SetLastOpenSites({{QStringLiteral("url1"), m_f.server.Url(QStringLiteral("/c"))}});
    HomePage::Choose(*m_f.store, m_f.server.Url(QStringLiteral("/own")));
    Start();
    QCOMPARE(Pages(), (QStringList{"/a", "/maker-ext", "/b"}));
    QCOMPARE(m_f.server.RequestCount("/own"), 0);
  }

 private:
  // Opens the window and waits until the start has wholly run and its pages have come.

  void Start() {
    m_f.Open();
    // The home page may be held back until the page in front has come.
    QTRY_VERIFY_WITH_TIMEOUT(m_f.window->findChild<TLaterHomePage *>() == nullptr, m_f.LoadTime);
    const auto allCame = [this] {
      const QList<TBrowserTab *> tabs = m_f.window->Tabs().Tabs();
      return std::ranges::all_of(tabs, [](TBrowserTab *tab) {
        return !tab->Busy() && (tab->Url().isEmpty() || tab->GetLocationUrl() == tab->Url());
      });
    };
    QTRY_VERIFY_WITH_TIMEOUT(allCame(), m_f.LoadTime);
  }

  [[nodiscard]] QStringList Pages() const {
    QStringList paths;
    for (TBrowserTab *tab : m_f.window->Tabs().Tabs()) paths.append(QUrl(tab->GetLocationUrl()).path());
    return paths;
  }

  [[nodiscard]] QString WriteGroup(const QStringList &paths) const {
    QFile group(m_f.Path(QStringLiteral("morning.hgp")));
    if (!group.open(QIODevice::WriteOnly)) return {};
    group.write("[HalvexGroup]\n");
    for (const QString &path : paths) group.write(QStringLiteral("%1=%2\n").arg(path, m_f.server.Url(path)).toUtf8());
    return group.fileName();
  }

  TMainWindowFixture m_f;
};

int main(int argc, char **argv) {
  return RunWithEngine<TestDelayedStart>(argc, argv);
}

#include "test_delayed_start.moc"
