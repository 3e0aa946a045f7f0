#include <QDir>
#include <QFile>

#include "app/later_home_page.h"
#include "browser/tabs/home_page.h"
#include "platform/program_folders.h"
#include "support/data_row.h"
#include "window/main_window_fixture.h"

using namespace Qt::StringLiterals;

// The pages that a start opens once the window is shown. Addresses are paths on the local server.
class TestDelayedStart final : public QObject, private TMainWindowFixture {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    Prepare();
    for (const char *path : {"/home", "/own", "/a", "/b", "/c", "/maker-ext"}) server.RoutePage(path, path);
    QFile product(ProgramFolders::UserData() + u"/product.ini"_s);
    QVERIFY(product.open(QIODevice::WriteOnly));
    product.write("[Addresses]\nDefaultHomePage=" + server.Url(u"/home"_s).toUtf8() +
                  "\nStartupPage=" + server.Url(u"/maker-%s"_s).toUtf8() + '\n');
  }
  void init() { Begin(); }
  void cleanup() { End(); }

  void Opens_data() {
    // The home page of the user's own, what the modes with a list or a group have in store, StartupPage, and the
    // argument of the command line.
    using L = QStringList;
    Columns<QString, QString, L, QString, QString, L>("mode", "home", "kept", "once", "argument", "pages");
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
    // A group takes the place of what the mode opened, whatever the mode and HGCloseFirst are.
    for (const char *argument : {"group", "group, others closed first"}) {
      for (const char *mode : {"Home", "Blank", "Last", "HalvexGroup"}) {
        QTest::addRow("%s, %s", mode, argument) << mode << "/own" << (qstrcmp(mode, "Last") == 0 ? L{"/c"} : L{}) << ""
                                                << argument << L{"/a", "/maker-ext", "/b"};
      }
    }
  }

  void Opens() {
    QFETCH(QString, mode);
    QFETCH(QString, home);
    QFETCH(QStringList, kept);
    QFETCH(QString, once);
    QFETCH(QString, argument);
    const auto url = [this](const QString &path) { return path.isEmpty() ? path : server.Url(path); };
    TZVOptions options(*store);
    options.Set(Setting::StartupMode, mode);
    options.Set(Setting::StartupPage, url(once));
    const bool isGroup = argument.startsWith(u"group"_s);
    options.Set(Setting::CommandLine, isGroup ? WriteGroup({u"/a"_s, u"/b"_s}) : url(argument));
    options.Set(Setting::HGCloseFirst, isGroup && argument != u"group"_s);
    HomePage::Choose(*store, url(home));
    TNamedAddresses sites{{u"url1"_s, u"left over from another mode"_s}};
    if (mode == u"Last"_s) {
      sites.clear();
      for (const QString &path : kept) sites.prepend({u"url%1"_s.arg(sites.size() + 1), url(path)});
    } else if (!kept.isEmpty()) {
      options.Set(Setting::StartupHalvexGroup, WriteGroup(kept));
    }
    options.SetLastOpenSites(sites);
    Start();
    QTEST(Pages(), "pages");
    if (isGroup) QCOMPARE(server.RequestCount("/own"), 0);
    QVERIFY(options.Get(Setting::StartupPage).isEmpty() && options.Get(Setting::CommandLine).isEmpty());
    // A list that no mode needs does not outlive the window.
    window->CloseWithoutAsking();
    window.reset();
    QCOMPARE(options.LastOpenSites()->isEmpty(), mode != u"Last"_s);
  }

 private:
  // Opens the window and waits until the start has wholly run and its pages have come.
  void Start() {
    Open();
    // The home page may be held back until the page in front has come.
    QTRY_VERIFY_WITH_TIMEOUT(window->findChild<TLaterHomePage *>() == nullptr, LoadTime);
    const auto came = [](TBrowserTab *tab) {
      return !tab->Busy() && (tab->Url().isEmpty() || tab->GetLocationUrl() == tab->Url());
    };
    QTRY_VERIFY_WITH_TIMEOUT(std::ranges::all_of(window->Tabs().Tabs(), came), LoadTime);
  }

  [[nodiscard]] QStringList Pages() const {
    QStringList paths;
    for (TBrowserTab *tab : window->Tabs().Tabs()) paths.append(QUrl(tab->GetLocationUrl()).path());
    return paths;
  }

  [[nodiscard]] QString WriteGroup(const QStringList &paths) const {
    QFile group(Path(u"morning.hgp"_s));
    if (!group.open(QIODevice::WriteOnly)) return {};
    group.write("[HalvexGroup]\n");
    for (const QString &path : paths) group.write(u"%1=%2\n"_s.arg(path, server.Url(path)).toUtf8());
    return group.fileName();
  }
};

ENGINE_MAIN(TestDelayedStart)
#include "test_delayed_start.moc"
