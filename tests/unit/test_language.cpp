#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDockWidget>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QMenuBar>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QSpinBox>
#include <QStandardItemModel>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QToolBox>
#include <QTreeWidget>
#include <QtTest>

#include "chrome/language_menu.h"
#include "config/language.h"
#include "config/language_properties.h"
#include "config/options.h"
#include "config/settings.h"
#include "platform/program_folders.h"
#include "store/private_folder.h"
#include "support/data_row.h"

namespace {

constexpr const char *Texts =
    "[INFO]\nLanguage=Testish\nLocale=xx\n[KEYS]\nReturn=Send\n"
    "[GLOBAL]\nOK=Fine\nChangeRestart=Start again\nx=single\n"
    "[FORM]\nCaption=The form\nKey=Text\nHint=Short|A longer one\nEmpty=\nain=carried\n";

class TBands final : public QWidget, public TCaptionedBands {
  Q_OBJECT
  Q_PROPERTY(QString Caption MEMBER m_caption)

 public:
  QString m_caption = "__Key";
  QStringList m_texts;
  int BandCount() const override { return int(m_texts.size()); }
  QString BandText(int band) const override { return m_texts.at(band); }
  void SetBandText(int band, const QString &text) override { m_texts[band] = text; }
};

QString WriteLanguage(const QString &folder, const QString &name, const QByteArray &text) {
  MakePrivateFolder(folder);
  QFile file(folder + u'/' + name);
  if (file.open(QIODevice::WriteOnly)) file.write(text);
  return file.fileName();
}

QString Nodes(const QStringList &texts, const TLanguage &language, bool isWidget) {
  QStringList result;
  if (isWidget) {
    // Depth first: every second text hangs below the one before it.
    QTreeWidget tree;
    for (qsizetype i = 0; i < texts.size(); ++i) {
      auto *node = i % 2 == 0 ? new QTreeWidgetItem(&tree) : new QTreeWidgetItem(tree.topLevelItem(int(i / 2)));
      node->setText(0, texts.at(i));
    }
    language.TranslateForm(&tree, "FORM");
    for (QTreeWidgetItemIterator item(&tree); *item != nullptr; ++item) result.append((*item)->text(0));
  } else {
    // A flat one, without captions over its columns.
    QTreeView tree;
    tree.setRootIsDecorated(false);
    tree.setHeaderHidden(true);
    QStandardItemModel model;
    for (const QString &text : texts) model.appendRow(new QStandardItem(text));
    tree.setModel(&model);
    language.TranslateForm(&tree, "FORM");
    for (int i = 0; i < model.rowCount(); ++i) result.append(model.item(i)->text());
  }
  return result.join(u' ');
}

}  // namespace

class TTestLanguage final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_language.LoadFile(WriteLanguage(m_folder->path(), "test.ini", Texts)));
    QDir(ProgramFolders::UserData()).removeRecursively();
  }

  void LooksUp() {
    QCOMPARE(m_language.Text("FORM", "Key"), "Text");
    QCOMPARE(m_language.Text(TTextKey{"form", "key"}), "Text");
    QCOMPARE(m_language.Global("OK"), "Fine");
    QCOMPARE(m_language.Text("FORM", "Empty"), "");
    QCOMPARE(m_language.Text("MAIN", "TrayRestore"), "UNDEFINED: MAIN > TrayRestore");
    QCOMPARE(m_language.Global("%1 %2"), "UNDEFINED: GLOBAL > %1 %2");
    QCOMPARE(m_language.LocaleName(), "xx");
    QCOMPARE(TLanguage::ShortHint("a|b|c"), "a");
    QCOMPARE(TLanguage::LongHint("a|b|c"), "b|c");
    QCOMPARE(TLanguage::ShortHint("a") + TLanguage::LongHint("a"), "aa");
  }

  void ReadsTheDirection_data() {
    Columns<QByteArray, Qt::LayoutDirection>("info", "direction");
    QTest::newRow("absent") << QByteArray() << Qt::LeftToRight;
    QTest::newRow("empty") << QByteArray("Direction=") << Qt::LeftToRight;
    QTest::newRow("ltr") << QByteArray("Direction=ltr") << Qt::LeftToRight;
    QTest::newRow("rtl") << QByteArray("Direction=rtl") << Qt::RightToLeft;
    QTest::newRow("other spelling") << QByteArray("Direction=RTL") << Qt::LeftToRight;
    QTest::newRow("elsewhere") << QByteArray("[MAIN]\nDirection=rtl") << Qt::LeftToRight;
  }
  void ReadsTheDirection() {
    QFETCH(QByteArray, info);
    QVERIFY(m_language.LoadFile(WriteLanguage(m_folder->path(), "direction.ini", "[INFO]\n" + info + '\n')));
    QTEST(m_language.Direction(), "direction");
  }

  void NamesKeys() {
    const QKeySequence keys(Qt::ALT | Qt::Key_Return);
    {
      QObject owner;
      m_language.InstallToolkitTranslations(&owner);
      QCOMPARE(keys.toString(QKeySequence::NativeText), "Alt+Send");
    }
    QCOMPARE(keys.toString(QKeySequence::NativeText), "Alt+Return");
  }

  void Markers_data() {
    Columns<QString, QString>("text", "translated");
    Row("of the form", "__Key", "Text");
    Row("global", "~~OK", "Fine");
    Row("three characters", "~~x", "single");
    Row("missing key stays", "__ShowGoButton", "__ShowGoButton");
    Row("empty text stays", "__Empty", "__Empty");
    Row("global key with the form's marker", "__OK", "__OK");
    for (const char *text : {"__", "~~", "_~Key", "~_Key", "_Key", "", " __Key", "Key", "Domain"}) {
      QTest::newRow(text) << text << text;
    }
  }
  void Markers() {
    QFETCH(QString, text);
    QLabel label(text);
    m_language.TranslateForm(&label, "FORM");
    QTEST(label.text(), "translated");
  }

  // Each kind of component, somewhere below the form, with the properties that show text.
  void EveryComponentIsTranslated() {
    QList<std::tuple<const QObject *, const char *, QString>> expected;
    const auto mark = [&expected](auto *object, const char *property, const char *marker, const char *translated) {
      object->setProperty(property, marker);
      expected.append({object, property, translated});
      return object;
    };
    QMainWindow form;
    mark(&form, "windowTitle", "__Caption", "The form");
    auto *central = new QWidget;
    form.setCentralWidget(central);
    mark(new QDockWidget(&form), "windowTitle", "__Key", "Text");
    auto *menu = mark(form.menuBar()->addMenu(QString()), "title", "~~OK", "Fine");
    auto *action = mark(menu->addAction(QString()), "text", "__Key", "Text");
    expected.append({action, "toolTip", "Text"});
    auto *hinted = mark(menu->addAction("__Key"), "toolTip", "__Hint", "Short");
    expected.append({hinted, "statusTip", "A longer one"});
    mark(menu->addAction("~~OK"), "statusTip", "__Hint", "A longer one");
    auto *box = mark(new QGroupBox(central), "title", "__Key", "Text");
    auto *check = mark(new QCheckBox(box), "text", "__Key", "Text");
    mark(check, "accessibleName", "__Hint", "Short");
    mark(check, "accessibleDescription", "__Hint", "A longer one");
    mark(mark(new QLineEdit(box), "text", "__Key", "Text"), "placeholderText", "~~OK", "Fine");
    mark(new QPlainTextEdit(box), "plainText", "__Key", "Text");
    mark(new QSpinBox(box), "specialValueText", "__Key", "Text");
    auto *other = mark(mark(new QObject(central), "Filter", "__Key", "Text"), "filter", "__Key", "__Key");
    other->setProperty("Text", 7);
    expected.append({other, "Text", "7"});
    auto *combo = new QComboBox(box);
    combo->setEditable(true);
    combo->addItems({"plain", "__Key", "Domain"});
    mark(combo, "currentText", "~~OK", "Fine");
    auto *tabs = new QTabWidget(central);
    tabs->addTab(mark(new QLabel, "text", "~~OK", "Fine"), "__Key");
    auto *tools = new QToolBox(central);
    tools->addItem(new QWidget, "__Key");
    auto *list = new QListWidget(central);
    list->addItems({"__Key", "Domain"});

    m_language.TranslateForm(&form, "FORM");
    for (const auto &[object, property, text] : expected) QCOMPARE(object->property(property).toString(), text);
    QCOMPARE((QStringList{combo->itemText(1), combo->itemText(2)}), (QStringList{"Text", "Domain"}));
    QCOMPARE((QStringList{tabs->tabText(0), tools->itemText(0)}), (QStringList{"Text", "Text"}));
    QCOMPARE((QStringList{list->item(0)->text(), list->item(1)->text()}), (QStringList{"Text", "Domain"}));
  }

  // Once a marked item was seen, later ones without a marker are looked up too, without their first two characters.
  void ItemsCarryTheSectionOver_data() {
    Columns<QStringList, QString>("items", "translated");
    QTest::newRow("plain before any marker") << QStringList{"xxKey", "__Key", "xxain"} << "xxKey Text carried";
    QTest::newRow("no such key") << QStringList{"__Key", "Other", "xx", "x", ""} << "Text Other xx x ";
    QTest::newRow("missing marked key") << QStringList{"__None", "xxKey"} << "__None Text";
    Row("section replaced", QStringList{"__Key", "~~OK", "xxKey", "xxx", "__None", "xxKey"},
        "Text Fine xxKey single __None Text");
    QTest::newRow("too short for a marker") << QStringList{"__", "xxKey", "~~x", "xxKey"} << "__ xxKey single xxKey";
    QTest::newRow("empty text") << QStringList{"__Empty", "xxEmpty"} << "__Empty xxEmpty";
  }
  void ItemsCarryTheSectionOver() {
    QFETCH(QStringList, items);
    QFETCH(QString, translated);
    QCOMPARE(Nodes(items, m_language, true), translated);
    QCOMPARE(Nodes(items, m_language, false), translated);

    // The section starts empty for every component: nothing is carried from one to the next.
    QWidget form;
    QTreeWidget list(&form);
    list.setRootIsDecorated(false);
    list.setHeaderLabels(items);
    auto *node = new QTreeWidgetItem(&list, {"__Key"});
    QTableWidget table(2, int(items.size()), &form);
    table.setHorizontalHeaderLabels(items);
    TBands bands;
    bands.setParent(&form);
    bands.m_texts = items;
    m_language.TranslateForm(&form, "FORM");
    QStringList columns;
    QStringList headers;
    for (int i = 0; i < items.size(); ++i) {
      columns.append(list.headerItem()->text(i));
      headers.append(table.horizontalHeaderItem(i)->text());
    }
    QCOMPARE(columns.join(u' '), translated);
    QCOMPARE(headers.join(u' '), translated);
    QCOMPARE(bands.m_texts.join(u' '), translated);
    QCOMPARE(bands.m_caption, "Text");
    // A list's rows are data, not design.
    QCOMPARE(node->text(0), "__Key");
  }

  void LoadFollowsTheSetting_data() {
    Columns<QString, QString>("setting", "current");
    QTest::newRow("not set") << QString() << "zveng.ini";
    Row("there", "my.ini", "my.ini");
    Row("gone", "gone.ini", "zveng.ini");
  }
  void LoadFollowsTheSetting() {
    QFETCH(QString, setting);
    QFETCH(QString, current);
    const QString own = ProgramFolders::UserData() + "/Languages";
    WriteLanguage(own, "my.ini", "[GLOBAL]\nOK=Mine\n");
    TRegistryStore store(m_folder->filePath("registry.sqlite"));
    TZVOptions options(store);
    if (!setting.isNull()) options.Set(Setting::LanguageFile, setting);
    TLanguage language;
    language.Load(options);
    QCOMPARE(language.FileName(), current);
    QCOMPARE(options.Get(Setting::LanguageFile), current);
    QCOMPARE(language.Global("OK"), current == "my.ini" ? "Mine" : "OK");
    QVERIFY(language.UnreadFile().isEmpty());
  }

  // It may be readable the next time.
  void LoadKeepsTheChoiceOfAnUnreadableFile() {
    const QString own = ProgramFolders::UserData() + "/Languages";
    WriteLanguage(own, "my.ini", "[GLOBAL]\nOK=Mine\n");
    // Beyond any use, and not only for those who are no superuser.
    QVERIFY(QFile::resize(own + "/my.ini", 65 * 1024 * 1024));
    TRegistryStore store(m_folder->filePath("registry.sqlite"));
    TZVOptions options(store);
    options.Set(Setting::LanguageFile, QString("my.ini"));
    TLanguage language;
    language.Load(options);
    QCOMPARE(language.FileName(), "zveng.ini");
    QCOMPARE(language.Global("OK"), "OK");
    QCOMPARE(language.UnreadFile(), "my.ini");
    QCOMPARE(options.Get(Setting::LanguageFile), "my.ini");
  }

  void TheMenuListsFilesAndStoresTheChoice() {
    const QString own = ProgramFolders::UserData() + "/Languages";
    WriteLanguage(own, "ZVENG.INI", "[INFO]\nLanguage=Shouting\n");
    WriteLanguage(own, "zveng.ini", "[INFO]\nLanguage=Mine\n");
    WriteLanguage(own, "nameless.ini", "\377\376junk");
    WriteLanguage(own, "other.txt", "[INFO]\nLanguage=No\n");
    QDir(own).mkdir("folder.ini");
    TRegistryStore store(m_folder->filePath("registry.sqlite"));
    TSettings settings(store);
    TLanguage language;
    language.LoadFile(WriteLanguage(m_folder->path(), "zveng.ini", Texts));
    QWidget window;
    QMenu menu(&window);
    menu.addAction("designed");
    const TLanguageMenu languages(menu, language, settings);

    QMap<QString, QAction *> entries;
    const auto open = [&] {
      entries.clear();
      menu.popup({});
      menu.hide();
      for (QAction *entry : menu.actions()) entries.insert(entry->text(), entry);
      return menu.actions().size();
    };
    const qsizetype count = open();
    QCOMPARE(open(), count);
    QCOMPARE(qsizetype(entries.size()), count);
    QVERIFY(entries.contains("Mine") && entries.contains("Shouting") && entries.contains(""));
    // The user's own file hides the shipped one of the same name.
    QVERIFY(!entries.contains("English") && !entries.contains("No") && !entries.contains("designed"));
    QVERIFY(entries["Mine"]->isChecked() && !entries["Shouting"]->isChecked());

    QVERIFY(QFile::remove(own + "/nameless.ini"));
    entries[""]->trigger();
    QVERIFY(window.findChildren<QMessageBox *>().isEmpty());
    QCOMPARE(language.FileName(), "zveng.ini");

    entries["Shouting"]->trigger();
    QPointer<QMessageBox> box = window.findChild<QMessageBox *>();
    QVERIFY(box != nullptr && box->isVisible() && box->buttons().size() == 1);
    QCOMPARE(box->windowTitle(), QApplication::applicationDisplayName());
    QCOMPARE(box->text() + box->buttons().first()->text(), "Start againFine");
    QTest::keyClick(box, Qt::Key_Return);
    QTRY_VERIFY(box == nullptr);
    QCOMPARE(language.FileName(), "ZVENG.INI");
    QCOMPARE(TZVOptions(store).Get(Setting::LanguageFile), "ZVENG.INI");
    open();
    QVERIFY(entries["Shouting"]->isChecked() && !entries["Mine"]->isChecked());
  }

 private:
  std::unique_ptr<QTemporaryDir> m_folder;
  TLanguage m_language;
};

QTEST_MAIN(TTestLanguage)
#include "test_language.moc"
