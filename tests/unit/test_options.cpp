#include <QScreen>
#include <QTemporaryDir>
#include <QtTest>

#include "config/options.h"
#include "config/registry_paths.h"
#include "platform/program_folders.h"
#include "store/private_folder.h"
#include "support/data_row.h"
#include "support/named_lines.h"

namespace {

constexpr TRegistryHive User = TRegistryHive::CurrentUser;

// What an empty store must yield, in the order in which the settings are listed.
// clang-format off
constexpr struct {
  const char *name;
  const char *text;
} Defaults[] = {
    {"AllowMultiInstance", "0"}, {"MinToTray", "0"}, {"AddressNewWin", "0"}, {"ShowGo", "0"},
    {"AutoCompleteStyle", "IE5"}, {"OpenNewAtEnd", "0"}, {"OpenNewInForeground", "0"}, {"HGCloseFirst", "0"},
    {"NewAction", "2"}, {"LimitTitleLength", "35"}, {"SleepMinutes", "30"}, {"MultipleLines", "0"}, {"TabsDown", "1"},
    {"TabColorScheme", "custom"}, {"InactiveTabColor", "11184810"}, {"InactiveFontColor", "0"},
    {"StartupMode", "Home"}, {"StartupHalvexGroup", ""}, {"StartupPage", ""}, {"CommandLine", ""},
    {"AskDefaultBrowser", "1"}, {"ConfirmCloseAll", "1"}, {"ConfirmShutdown", "1"}, {"UsePopupHalvex", "1"},
    {"PopupHalvexNotify", "1"}, {"CtrlPre", "http://www."}, {"CtrlPost", ".com"}, {"ShiftPre", "http://www."},
    {"ShiftPost", ".net"}, {"CtrlShiftPre", "http://www."}, {"CtrlShiftPost", ".org"}, {"FavoritesNewWin", "1"},
    {"HistoryNewWin", "1"}, {"HistoryDays", "365"}, {"SearchNewWin", "1"}, {"LinksNewWin", "1"}, {"QuickSearchNewWin", "1"},
    {"HalvexBarWidth", "234"}, {"HBAutoExpand", "1"}, {"HalvexBarPage", "0"}, {"ViewAddressBar", "1"}, {"ViewLinksBar", "1"},
    {"ViewToolbar", "1"}, {"ViewStatusBar", "1"}, {"ViewHalvexBar", "0"}, {"FullScreen", "0"},
    {"FullscreenMenuBar", "0"}, {"FullscreenStatusBar", "0"}, {"Maximized", "0"}, {"Left", "10"}, {"Top", "10"},
    {"FavoritesWidth", "250"}, {"FavoritesHeight", "400"}, {"LastFavoritesFolder", ""}, {"DownloadFolder", ""}, {"LastDownloadFolder", ""}, {"DownloadAsk", "1"}, {"DisableALTShortcuts", "0"}, {"BreakFavorites", "0"},
    {"ShowOpenAllFavorites", "1"}, {"ToolbarShowColor", "0"}, {"UseCustomIcons", "1"}, {"AutoRefresh", "0"},
    {"LanguageFile", "zveng.ini"}, {"LoadBHOs", "0"}, {"VersionCheck", "1"}, {"CheckedVersion", "155"},
    {"LastPong", "0"}, {"New", "0"}, {"FlyswatEnabled", "1"}, {"FlyswatShowLinks", "1"}, {"FlyswatAgreed", ""},
};
// clang-format on

QString NameOf(const TSetting &setting) {
  return std::visit([](const auto &one) { return QString(one.name); }, setting);
}

QString AsText(const TZVOptions &options, const TSetting &setting) {
  if (const auto *flag = std::get_if<TFlagSetting>(&setting)) return options.Get(*flag) ? "1" : "0";
  if (const auto *number = std::get_if<TIntegerSetting>(&setting)) return QString::number(options.Get(*number));
  return options.Get(std::get<TStringSetting>(setting));
}

}  // namespace

class TTestOptions final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    m_folder = std::make_unique<QTemporaryDir>();
    m_store = std::make_unique<TRegistryStore>(m_folder->filePath("registry.sqlite"));
  }

  void AnEmptyStoreGivesTheDefaults() {
    const TZVOptions options(*m_store);
    QSet<QString> expected{"Width", "Height", "SearchBar"};
    for (const auto &row : Defaults) {
      expected.insert(row.name);
      const auto setting = std::ranges::find_if(Setting::All, [&](const auto &one) { return NameOf(one) == row.name; });
      QVERIFY2(setting != Setting::All.end(), row.name);
      QCOMPARE(row.name + ('=' + AsText(options, *setting)), row.name + ('=' + QString(row.text)));
    }
    QCOMPARE(size_t(expected.size()), Setting::All.size());
    QCOMPARE(options.Get(Setting::Width), QGuiApplication::primaryScreen()->availableSize().width() - 40);
    QCOMPARE(options.Get(Setting::Height), QGuiApplication::primaryScreen()->availableSize().height() - 40);
    QCOMPARE(options.AutoCompleteMode(), 2);
    for (const auto &list :
         {options.LastOpenSites(), options.SearchEngines(), options.SearchBarEntries(), options.QuickSearchEntries()}) {
      QVERIFY(list && list->isEmpty());
    }
    QVERIFY(options.PopupList()->isEmpty() && options.BrowserHelperObjects().isEmpty());
  }

  // A setting is stored at once, under its own name, as text, where another object sees it.
  void SettersStore() {
    TZVOptions options(*m_store);
    options.Set(Setting::TabsDown, false);
    options.Set(Setting::LimitTitleLength, 1);
    options.Set(Setting::CtrlPre, "t \"ä");
    QCOMPARE(m_store->Read(User, RegistryKey::CurrentVersion, "TabsDown"), "0");
    QCOMPARE(m_store->Read(User, RegistryKey::CurrentVersion, "LimitTitleLength"), "1");
    QCOMPARE(m_store->Read(User, RegistryKey::CurrentVersion, "CtrlPre"), "t \"ä");
    const TZVOptions other(*m_store);
    QVERIFY(!other.Get(Setting::TabsDown) && other.Get(Setting::LimitTitleLength) == 1);
    QCOMPARE(other.Get(Setting::CtrlPre), "t \"ä");
    QCOMPARE(m_store->Values(User, RegistryKey::CurrentVersion).size(), 3);
  }

  void NumbersAreReadFromText_data() {
    // The number is that of LimitTitleLength, default 35, the flag that of TabsDown, default true.
    Columns<QString, int, bool>("stored", "number", "flag");
    QTest::newRow("number") << "5" << 5 << true;
    QTest::newRow("zero") << "0" << 0 << false;
    QTest::newRow("negative") << "-7" << -7 << true;
    QTest::newRow("blanks around") << " 12\t" << 12 << true;
    QTest::newRow("word") << "abc" << 35 << true;
    QTest::newRow("empty") << "" << 35 << true;
    QTest::newRow("hexadecimal") << "0x10" << 35 << true;
    QTest::newRow("largest") << "2147483647" << 2147483647 << true;
    QTest::newRow("smallest") << "-2147483648" << int(-2147483647 - 1) << true;
    QTest::newRow("too large") << "2147483648" << 35 << true;
  }
  void NumbersAreReadFromText() {
    QFETCH(QString, stored);
    for (const char *name : {"LimitTitleLength", "TabsDown"}) {
      m_store->Write(User, RegistryKey::CurrentVersion, name, stored);
    }
    const TZVOptions options(*m_store);
    QTEST(options.Get(Setting::LimitTitleLength), "number");
    QTEST(options.Get(Setting::TabsDown), "flag");
  }

  void IntegerValuesOfOthersAreRead() {
    m_store->WriteInteger(User, RegistryKey::CurrentVersion, "newaction", 1);
    QCOMPARE(TZVOptions(*m_store).Get(Setting::NewAction), 1);
  }

  void WrittenNumbersAreBroughtIntoRange() {
    TZVOptions options(*m_store);
    for (const auto &[written, stored] : {std::pair(7, 2), {2, 2}, {-3, 0}}) {
      options.Set(Setting::NewAction, written);
      QCOMPARE(options.Get(Setting::NewAction), stored);
    }
    for (const auto &[written, stored] : {std::pair(-1, 234), {0, 0}, {9999, 9999}}) {
      options.Set(Setting::HalvexBarWidth, written);
      QCOMPARE(options.Get(Setting::HalvexBarWidth), stored);
    }
    for (const auto &[written, stored] : {std::pair(-1, 0), {0, 0}, {9999, 9999}}) {
      options.Set(Setting::HistoryDays, written);
      QCOMPARE(options.Get(Setting::HistoryDays), stored);
    }
    // Only writing clamps: what somebody else stored is told as it is.
    m_store->Write(User, RegistryKey::CurrentVersion, "NewAction", "-1");
    QCOMPARE(options.Get(Setting::NewAction), -1);
  }

  void CompletionModes() {
    TZVOptions options(*m_store);
    for (const auto &[mode, style, read] : {std::tuple(1, "IE4", 1), {2, "IE5", 2}, {0, "none", 0}, {5, "none", 0}}) {
      options.SetAutoCompleteMode(mode);
      QCOMPARE(options.Get(Setting::AutoCompleteStyle), style);
      QCOMPARE(options.AutoCompleteMode(), read);
    }
    for (const char *style : {"", "ie5", "IE5 "}) {
      options.Set(Setting::AutoCompleteStyle, style);
      QCOMPARE(options.AutoCompleteMode(), 0);
    }
  }

  void SearchBarDefaultIsDeployed() {
    QCOMPARE(TZVOptions(*m_store).Get(Setting::SearchBar), "");
    QVERIFY(MakePrivateFolder(ProgramFolders::UserData()));
    QFile file(ProgramFolders::UserData() + "/product.ini");
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("[Addresses]\nSearchPanelPage=http://127.0.0.1/searchbar/fraSearchIE5.php\n");
    file.close();
    QCOMPARE(TZVOptions(*m_store).Get(Setting::SearchBar), "http://127.0.0.1/searchbar/fraSearchIE5.php");
    file.remove();
  }

  void NamedListsKeepTheirOrder() {
    TZVOptions options(*m_store);
    const TNamedAddresses entries{{"url3", "http://a/?q=1=2"}, {"url1", ""}, {"Ähre", "b"}, {"", "unnamed"}};
    options.SetLastOpenSites(entries);
    options.SetSearchEngines({{"first", "1"}, {"gone", "2"}});
    options.SetSearchEngines({{"b", "2"}, {"A=B=", "1"}, {"B", "3"}});
    options.SetSearchBarEntries({{"bar", "1"}});
    options.SetQuickSearchEntries({{"quick", "%s"}});
    QCOMPARE(ToLines(options.LastOpenSites()), ToLines(entries));
    // A name ends at its first "=", in whatever way it got there.
    m_store->Write(User, RegistryKey::SearchEngines, "c=d", "4");
    QCOMPARE(options.SearchEngines(), (TNamedAddresses{{"b", "3"}, {"A", "B==1"}, {"c", "d=4"}}));
    QCOMPARE(m_store->Read(User, RegistryKey::SearchEngines, "a"), "B==1");
    QCOMPARE(ToLines(options.SearchBarEntries()), QStringList{"bar=1"});
    QCOMPARE(ToLines(options.QuickSearchEntries()), QStringList{"quick=%s"});
    QCOMPARE(m_store->Subkeys(User, RegistryKey::CurrentVersion),
             (QStringList{"Last Open Sites", "Search Engines", "Search Bar", "QuickSearch"}));
    options.SetSearchEngines({});
    QVERIFY(!m_store->KeyExists(User, RegistryKey::SearchEngines));
  }

  void PopupListIsSortedAndRepaired() {
    TZVOptions options(*m_store);
    const QString key = RegistryKey::PopupHalvex;
    m_store->Write(User, key, "url3", "https://b.test/x=1");
    m_store->Write(User, key, "url1", "name=http://C.test");
    m_store->Write(User, key, "url2", "http://c.TEST");
    m_store->Write(User, key, "url4", "*.ads.test/*");
    m_store->Write(User, key, "url5", "");
    m_store->Write(User, key, "url6", "a=https://x=http://a.test");
    QCOMPARE(options.PopupList(),
             (QStringList{"*.ads.test/*", "http://C.test", "https://b.test/x=1", "https://x=http://a.test"}));
    // Written back and read again it stays itself.
    const QStringList list = *options.PopupList();
    options.SetPopupList(list);
    QCOMPARE(options.PopupList(), list);
    QCOMPARE(m_store->Read(User, key, "url2"), "http://C.test");
    QCOMPARE(m_store->Values(User, key).size(), list.size());
    options.SetPopupList({"url1=*.ads.test"});
    QCOMPARE(options.PopupList(), QStringList("url1=*.ads.test"));
    options.SetPopupList({});
    QVERIFY(!m_store->KeyExists(User, key));
  }

  void HelperObjectsAreSubkeysAndZvidGoes() {
    TZVOptions options(*m_store);
    m_store->CreateKey(User, QString(RegistryKey::BrowserHelperObjects) + "\\{B}");
    m_store->CreateKey(User, QString(RegistryKey::BrowserHelperObjects) + "\\{A}\\deeper");
    QCOMPARE(options.BrowserHelperObjects(), (QStringList{"{B}", "{A}"}));
    m_store->Write(User, RegistryKey::CurrentVersion, "ZVID", "1");
    options.RemoveZvid();
    QVERIFY(!m_store->Read(User, RegistryKey::CurrentVersion, "ZVID"));
  }

  void WebAddresses_data() {
    Columns<QString, QString>("line", "address");
    Row("plain", "url1=http://a.test/?x=1", "http://a.test/?x=1");
    Row("secure", "url1=https://a.test", "https://a.test");
    Row("one in the other", "u=https://a.test/?to=http://b.test", "https://a.test/?to=http://b.test");
    Row("the other in the one", "u=http://a.test/?to=https://b.test", "http://a.test/?to=https://b.test");
    Row("neither", "url1=ftp://a.test", "ftp://a.test");
    Row("case counts", "url1=HTTP://a.test", "HTTP://a.test");
    Row("a name with =", "a=b=http://a.test", "http://a.test");
  }
  void WebAddresses() {
    QFETCH(QString, line);
    QTEST(FromLines({line}).first().WebAddress(), "address");
  }

 private:
  std::unique_ptr<QTemporaryDir> m_folder;
  std::unique_ptr<TRegistryStore> m_store;
};

QTEST_MAIN(TTestOptions)
#include "test_options.moc"
