#include <optional>
#include <QApplication>
#include <QDir>
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
#include "search/search_engine_dialog.h"
#include "search/search_lists.h"
#include "store/registry_store.h"
#include "support/data_row.h"
#include "support/list_editor_driver.h"
#include "support/modal_dialogs.h"
#include "support/named_lines.h"
#include "support/shipped_files.h"
#include "support/store_trouble.h"

// The lists of named addresses: how they are stored, the dialog that changes them, the menus made of them.
class TestSearchLists final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { QVERIFY(m_language.LoadFile(SourceFile(QStringLiteral("Languages/zveng.ini")))); }

  void init() { m_f.emplace(m_language); }
  void cleanup() { m_f.reset(); }

  void ExamplesComeOnce() {
    // None is shipped with the program; whoever distributes it may put some beside it.
    QVERIFY(TSearchLists(m_language, m_f->store, m_f->actions, nullptr).QuickSearches().isEmpty());
    QVERIFY(QDir().mkpath(ProgramFolders::UserData()));
    QFile examples(ProgramFolders::UserData() + "/searches.ini");
    QVERIFY(examples.open(QIODevice::WriteOnly) && examples.write("[QuickSearch]\nw=http://a/?q=%s\n") > 0);
    examples.close();
    init();
    {
      TSearchLists first(m_language, m_f->store, m_f->actions, nullptr);
      QVERIFY(!first.QuickSearches().isEmpty());
      QCOMPARE(Stored(RegistryKey::QuickSearch), ToLines(first.QuickSearches()));
      QVERIFY(first.Load(TSearchList::SearchEngines)->isEmpty());
      first.Save(TSearchList::QuickSearch, {});
    }
    QVERIFY(m_f->store.KeyExists(TRegistryHive::CurrentUser, RegistryKey::QuickSearch));
    QVERIFY(TSearchLists(m_language, m_f->store, m_f->actions, nullptr).QuickSearches().isEmpty());
    // Any list at all means that this is no first start.
    init();
    m_f->store.CreateKey(TRegistryHive::CurrentUser, RegistryKey::SearchBar);
    QVERIFY(TSearchLists(m_language, m_f->store, m_f->actions, nullptr).QuickSearches().isEmpty());
    QVERIFY(examples.remove());
  }

  void DialogRefuses_data() {
    Columns<TSearchList, QString, QString, QStringList>("list", "title", "location", "rows");
    using L = TSearchList;
    const QString http("http://a/");
    Row("keyword of two words", L::QuickSearch, "two words", http, QStringList());
    Row("title of two words", L::SearchEngines, "two words", http, QStringList("two words|http://a/"));
    Row("panel page of two words", L::SearchBar, "two words", http, QStringList("two words|http://a/"));
    Row("trimmed", L::QuickSearch, " g ", " http://a/%s ", QStringList("g|http://a/%s"));
    Row("no title", L::SearchEngines, "  ", http, QStringList());
    Row("no location", L::SearchEngines, "a", "  ", QStringList());
  }
  void DialogRefuses() {
    QFETCH(TSearchList, list);
    QFETCH(QString, title);
    QFETCH(QString, location);
    QFETCH(QStringList, rows);
    TSearchLists lists(m_language, m_f->store, m_f->actions, nullptr);
    lists.Save(list, {});
    TfrmSearchEngine dialog(m_language, lists, list, *lists.Load(list));
    dialog.show();
    QVERIFY(dialog.windowTitle().startsWith("Organize "));
    const TListEditorDriver editor = DriverOf(dialog);
    QCOMPARE(editor.Part<QLabel>("lblNote").isVisible(), list == TSearchList::QuickSearch);
    editor.Click("cmdInsert");
    editor.Enter(title, location);
    QCOMPARE(editor.Shown(), rows);
    QCOMPARE(editor.IsEditing(), rows.isEmpty());
    // The trimmed text is also what stands in the fields.
    QCOMPARE(editor.Entered(), QStringList({title.trimmed(), location.trimmed()}));
  }

  void OrganizeSavesOrNot() {
    TSearchLists lists(m_language, m_f->store, m_f->actions, nullptr);
    for (const auto &[list, key] : {std::pair(TSearchList::SearchBar, RegistryKey::SearchBar),
                                    {TSearchList::SearchEngines, RegistryKey::SearchEngines},
                                    {TSearchList::QuickSearch, RegistryKey::QuickSearch}}) {
      lists.Save(list, FromLines({"a=1", "b=2"}));
      for (const bool save : {false, true}) {
        OnModalDialog<TfrmSearchEngine>([&](TfrmSearchEngine &dialog) {
          const TListEditorDriver editor = DriverOf(dialog);
          editor.Select(1);
          editor.Click("cmdUp");
          editor.Click(save ? "cmdOk" : "cmdCancel");
        });
        QCOMPARE(lists.Organize(list), save);
        const QStringList expected = save ? QStringList{"b=2", "a=1"} : QStringList{"a=1", "b=2"};
        QCOMPARE(Stored(key), expected);
        QCOMPARE(ToLines(lists.Load(list)), expected);
      }
    }
    QCOMPARE(ToLines(lists.QuickSearches()), QStringList({"b=2", "a=1"}));
  }

  // The user is told, and what was changed is still in the dialog to be kept after all.
  void RefusedSave() {
    TSearchLists(m_language, m_f->store, m_f->actions, nullptr)
        .Save(TSearchList::QuickSearch, FromLines({"a=1", "b=2"}));
    TRegistryStore readOnly(m_f->store.FilePath(), TRegistryStore::TReadOnly());
    TSearchLists lists(m_language, readOnly, m_f->actions, nullptr);
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
    QVERIFY(!lists.Organize(TSearchList::QuickSearch));
    QCOMPARE(told, m_language.Text("MAIN", "StoreNotKept"));
    QCOMPARE(ToLines(lists.QuickSearches()), QStringList({"a=1", "b=2"}));
  }

  // A list that cannot be read is not offered as an empty one, and a store that cannot be read gets no examples.
  void ListsThatCannotBeRead() {
    TSearchLists(m_language, m_f->store, m_f->actions, nullptr).Save(TSearchList::QuickSearch, FromLines({"own=1"}));
    std::optional<TStoreLock> lock(std::in_place, m_f->store.FilePath(), TStoreLock::TKind::Unreadable);
    TSearchLists lists(m_language, m_f->store, m_f->actions, &m_f->window);
    QVERIFY(lists.QuickSearches().isEmpty() && !lists.Organize(TSearchList::QuickSearch));
    const auto *box = m_f->window.findChild<QMessageBox *>();
    QVERIFY(box != nullptr);
    QCOMPARE(box->text(), m_language.Text("MAIN", "StoreNotRead"));
    lock.reset();
    QCOMPARE(ToLines(lists.QuickSearches()), QStringList("own=1"));
    QVERIFY(m_f->store.Flush(1000));
    QCOMPARE(Stored(RegistryKey::QuickSearch), QStringList("own=1"));
  }

  void Menus() {
    TSearchLists(m_language, m_f->store, m_f->actions, nullptr)
        .Save(TSearchList::SearchEngines, {{"Tom & co", "http://tom.example/?a=1&b=2"}, {"b", "http://b.example/"}});
    TSearchLists lists(m_language, m_f->store, m_f->actions, nullptr);
    QMenu &engines = *m_f->actions.Menu(TMenu::SearchEngines);
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
    for (const TRegistryValue &value : m_f->store.Values(TRegistryHive::CurrentUser, key)) {
      lines.append(value.name + u'=' + value.data);
    }
    return lines;
  }
  [[nodiscard]] static TListEditorDriver DriverOf(TfrmSearchEngine &dialog) {
    return {dialog, "lstEngines", {"txtTitle", "txtUrl"}};
  }

  // What the lists need.
  struct TParts {
    explicit TParts(const TLanguage &language) : actions(&window, language, settings) {}

    QTemporaryDir folder;
    TRegistryStore store{folder.filePath("registry.sqlite")};
    TSettings settings{store};
    QWidget window;
    TActions actions;
  };
  TLanguage m_language;
  std::optional<TParts> m_f;
};

QTEST_MAIN(TestSearchLists)
#include "test_search_lists.moc"
