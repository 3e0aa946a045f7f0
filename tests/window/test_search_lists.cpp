#include <QAction>
#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include "actions/actions.h"
#include "config/language.h"
#include "config/registry_paths.h"
#include "config/settings.h"
#include "platform/program_folders.h"
#include "search/quick_search.h"
#include "search/search_engine_dialog.h"
#include "search/search_lists.h"
#include "store/private_folder.h"
#include "store/registry_store.h"
#include "support/list_editor_driver.h"
#include "support/modal_dialogs.h"
#include "support/named_lines.h"

// The lists of named addresses: how they are stored, the dialog that changes them, the menus made of them.
class TestSearchLists final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { QVERIFY(m_language.LoadFile(QStringLiteral(ZV_SOURCE_DIR "/Languages/zveng.ini"))); }

  void init() {
    m_actions.reset();
    m_settings.reset();
    m_store.reset();
    m_folder = std::make_unique<QTemporaryDir>();
    m_store = std::make_unique<TRegistryStore>(m_folder->filePath("registry.sqlite"));
    m_settings = std::make_unique<TSettings>(*m_store);
    m_actions = std::make_unique<TActions>(&m_window, m_language, *m_settings);
  }

  void SavesAsItStands() {
    TSearchLists lists(m_language, *m_store, *m_actions, nullptr);
    lists.Save(TSearchList::SearchEngines, {{"B & b", "http://b.example/?x=1"},
                                            {"a", "http://a.example/"},
                                            {"odd=title", "rest"},
                                            {"A", "http://later.example/"}});
    const QStringList kept = {"B & b=http://b.example/?x=1", "a=http://later.example/", "odd=title=rest"};
    QCOMPARE(Stored(RegistryKey::SearchEngines), kept);
    QCOMPARE(ToLines(lists.Load(TSearchList::SearchEngines)), kept);
    QCOMPARE(m_store->Read(TRegistryHive::CurrentUser, RegistryKey::SearchEngines, "odd"), QString("title=rest"));
    lists.Save(TSearchList::SearchEngines, {{"z", "http://z.example/"}});
    QCOMPARE(Stored(RegistryKey::SearchEngines), QStringList("z=http://z.example/"));
    QVERIFY(lists.Load(TSearchList::SearchBar).isEmpty());
    QVERIFY(!m_store->KeyExists(TRegistryHive::CurrentUser, RegistryKey::SearchBar));
  }

  void ExamplesComeOnce() {
    {
      TSearchLists first(m_language, *m_store, *m_actions, nullptr);
      QVERIFY(!first.QuickSearches().isEmpty());
      QCOMPARE(Stored(RegistryKey::QuickSearch), ToLines(first.QuickSearches()));
      QVERIFY(first.Load(TSearchList::SearchEngines).isEmpty());
      first.Save(TSearchList::QuickSearch, {});
    }
    QVERIFY(m_store->KeyExists(TRegistryHive::CurrentUser, RegistryKey::QuickSearch));
    const TSearchLists again(m_language, *m_store, *m_actions, nullptr);
    QVERIFY(again.QuickSearches().isEmpty());

    // Any list at all means that this is no first start.
    init();
    m_store->CreateKey(TRegistryHive::CurrentUser, RegistryKey::SearchBar);
    QVERIFY(TSearchLists(m_language, *m_store, *m_actions, nullptr).QuickSearches().isEmpty());

    // The user's own file wins over the shipped one.
    init();
    QVERIFY(MakePrivateFolder(ProgramFolders::UserData()));
    QFile own(ProgramFolders::UserData() + "/searches.ini");
    QVERIFY(own.open(QIODevice::WriteOnly) && own.write("[QuickSearch]\nmine=http://mine.example/%s\n") > 0);
    own.close();
    QCOMPARE(TSearchLists(m_language, *m_store, *m_actions, nullptr).QuickSearches(),
             (TNamedAddresses{{"mine", "http://mine.example/%s"}}));
    QVERIFY(own.remove());
  }

  void ExamplesAreSound() {
    const TSearchLists lists(m_language, *m_store, *m_actions, nullptr);
    for (const auto &[keyword, format] : lists.QuickSearches()) {
      const TQuickSearch found = TQuickSearch::Of(keyword + " word", lists.QuickSearches());
      QVERIFY2(found.kind == TQuickSearch::TKind::Address && found.address.contains("word"), qPrintable(keyword));
    }
  }

  void DialogRefuses_data() {
    QTest::addColumn<TSearchList>("list");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("location");
    QTest::addColumn<QStringList>("rows");
    const QString http("http://a/");
    QTest::newRow("keyword of two words") << TSearchList::QuickSearch << "two words" << http << QStringList();
    QTest::newRow("title of two words") << TSearchList::SearchEngines << "two words" << http
                                        << QStringList("two words|http://a/");
    QTest::newRow("panel page of two words")
        << TSearchList::SearchBar << "two words" << http << QStringList("two words|http://a/");
    QTest::newRow("trimmed") << TSearchList::QuickSearch << " g "
                             << " http://a/%s " << QStringList("g|http://a/%s");
    QTest::newRow("no title") << TSearchList::SearchEngines << "  " << http << QStringList();
    QTest::newRow("no location") << TSearchList::SearchEngines << "a"
                                 << "  " << QStringList();
  }

  void DialogRefuses() {
    QFETCH(TSearchList, list);
    QFETCH(QString, title);
    QFETCH(QString, location);
    QFETCH(QStringList, rows);
    TSearchLists lists(m_language, *m_store, *m_actions, nullptr);
    lists.Save(list, {});
    TfrmSearchEngine dialog(m_language, lists, list);
    dialog.show();
    QVERIFY(dialog.windowTitle().startsWith("Organize "));
    const TListEditorDriver editor = DriverOf(dialog);
    QCOMPARE(editor.Part<QLabel>("lblNote").isVisible(), list == TSearchList::QuickSearch);
    editor.Click("cmdInsert");
    QCOMPARE(editor.Enabled(), QString());
    editor.Enter(title, location);
    QCOMPARE(editor.Shown(), rows);
    QCOMPARE(editor.IsEditing(), rows.isEmpty());
    // The trimmed text is also what stands in the fields.
    QCOMPARE(editor.Entered(), QStringList({title.trimmed(), location.trimmed()}));
  }

  void OrganizeSavesOrNot_data() {
    QTest::addColumn<TSearchList>("list");
    QTest::addColumn<QByteArray>("button");
    for (const auto &[name, list] :
         {std::pair("bar", TSearchList::SearchBar), std::pair("engines", TSearchList::SearchEngines),
          std::pair("quick", TSearchList::QuickSearch)}) {
      QTest::newRow(qPrintable(QString("ok, ") + name)) << list << QByteArray("cmdOk");
      QTest::newRow(qPrintable(QString("cancel, ") + name)) << list << QByteArray("cmdCancel");
    }
  }

  void OrganizeSavesOrNot() {
    QFETCH(TSearchList, list);
    QFETCH(QByteArray, button);
    TSearchLists lists(m_language, *m_store, *m_actions, nullptr);
    lists.Save(list, FromLines({"a=1", "b=2"}));
    OnModalDialog<TfrmSearchEngine>([&](TfrmSearchEngine &dialog) {
      const TListEditorDriver editor = DriverOf(dialog);
      editor.Select(1);
      editor.Click("cmdUp");
      editor.Click(button);
    });
    const bool saved = lists.Organize(list);
    QCOMPARE(saved, button == "cmdOk");
    const QStringList expected = saved ? QStringList{"b=2", "a=1"} : QStringList{"a=1", "b=2"};
    QCOMPARE(ToLines(lists.Load(list)), expected);
    if (list == TSearchList::QuickSearch) QCOMPARE(ToLines(lists.QuickSearches()), expected);
  }

  // The user is told, and what was changed is still in the dialog to be kept after all.
  void RefusedSave() {
    TSearchLists lists(m_language, *m_store, *m_actions, nullptr);
    lists.Save(TSearchList::QuickSearch, FromLines({"a=1", "b=2"}));
    QString told;
    OnModalDialog<TfrmSearchEngine>([&](TfrmSearchEngine &dialog) {
      const TListEditorDriver editor = DriverOf(dialog);
      editor.Click("cmdDelete");
      editor.Click("cmdOk");
      auto *box = dialog.findChild<QMessageBox *>();
      if (box != nullptr) told = box->text();
      QVERIFY(dialog.isVisible());
      QCOMPARE(editor.Shown(), QStringList("b|2"));
      dialog.reject();
    });
    // Somebody else writes all the while.
    TRegistryStore other(m_store->FilePath());
    QVERIFY(other.InTransaction([&] { return !lists.Organize(TSearchList::QuickSearch); }));
    QCOMPARE(told, m_language.Text("MAIN", "StoreNotKept"));
    QCOMPARE(ToLines(lists.QuickSearches()), QStringList({"a=1", "b=2"}));
  }

  void Menus() {
    TSearchLists(m_language, *m_store, *m_actions, nullptr)
        .Save(TSearchList::SearchEngines, {{"Tom & co", "http://tom.example/?a=1&b=2"}, {"b", "http://b.example/"}});
    TSearchLists lists(m_language, *m_store, *m_actions, nullptr);
    QMenu &engines = *m_actions->Menu(TMenu::SearchEngines);
    Q_EMIT engines.aboutToShow();
    QCOMPARE(engines.actions().size(), 4);
    QVERIFY(engines.actions().at(1)->isSeparator());
    QCOMPARE(engines.actions().at(2)->text(), "Tom && co");
    QCOMPARE(engines.actions().at(2)->toolTip(), "<qt>http://tom.example/?a=1&amp;b=2</qt>");
    QCOMPARE(lists.DefaultSearchPage(), "http://tom.example/?a=1&b=2");
    QSignalSpy chosen(&lists, &TSearchLists::EngineChosen);
    engines.actions().at(2)->trigger();
    QCOMPARE(chosen.value(0).value(0).toString(), "http://tom.example/?a=1&b=2");

    QMenu pages;
    for (int i = 0; i < 3; ++i) pages.addAction("fixed");
    lists.Save(TSearchList::SearchBar, {{"panel", "http://panel.example/"}});
    lists.FillSearchBarMenu(&pages);
    QCOMPARE(pages.actions().size(), 4);
    QCOMPARE(lists.DefaultSearchPage(), "http://panel.example/");
    QSignalSpy pageChosen(&lists, &TSearchLists::SearchPageChosen);
    pages.actions().at(3)->trigger();
    QCOMPARE(pageChosen.value(0).value(0).toString(), "http://panel.example/");
    QCOMPARE(chosen.size(), 1);

    OnModalDialog<TfrmSearchEngine>([&](TfrmSearchEngine &dialog) {
      DriverOf(dialog).Click("cmdDelete");
      DriverOf(dialog).Click("cmdOk");
    });
    engines.actions().at(0)->trigger();
    QCOMPARE(engines.actions().size(), 3);
    QCOMPARE(lists.DefaultSearchPage(), "http://b.example/");
    // Another process has emptied the list: the menu is fresh when it opens.
    lists.Save(TSearchList::SearchEngines, {});
    Q_EMIT engines.aboutToShow();
    QCOMPARE(engines.actions().size(), 2);
    QCOMPARE(pages.actions().size(), 4);
  }

 private:
  [[nodiscard]] QStringList Stored(const char *key) const {
    QStringList lines;
    for (const TRegistryValue &value : m_store->Values(TRegistryHive::CurrentUser, key)) {
      lines.append(value.name + u'=' + value.data);
    }
    return lines;
  }
  [[nodiscard]] static TListEditorDriver DriverOf(TfrmSearchEngine &dialog) {
    return {dialog, "lstEngines", {"txtTitle", "txtUrl"}};
  }

  TLanguage m_language;
  std::unique_ptr<QTemporaryDir> m_folder;
  std::unique_ptr<TRegistryStore> m_store;
  std::unique_ptr<TSettings> m_settings;
  QWidget m_window;
  std::unique_ptr<TActions> m_actions;
};

QTEST_MAIN(TestSearchLists)
#include "test_search_lists.moc"
