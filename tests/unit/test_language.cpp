#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDockWidget>
#include <QElapsedTimer>
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

namespace {

constexpr const char *Texts =
    "[INFO]\nLanguage=Testish\nLocale=xx\n"
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
    QTreeView tree;
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

  void Markers_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("translated");
    QTest::newRow("of the form") << "__Key"
                                 << "Text";
    QTest::newRow("global") << "~~OK"
                            << "Fine";
    QTest::newRow("three characters") << "~~x"
                                      << "single";
    QTest::newRow("missing key stays") << "__ShowGoButton"
                                       << "__ShowGoButton";
    QTest::newRow("empty text stays") << "__Empty"
                                      << "__Empty";
    QTest::newRow("global key with the form's marker") << "__OK"
                                                       << "__OK";
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
    QMainWindow form;
    form.setWindowTitle("__Caption");
    auto *central = new QWidget;
    form.setCentralWidget(central);
    auto *dock = new QDockWidget("__Key", &form);
    auto *menu = form.menuBar()->addMenu("~~OK");
    auto *action = menu->addAction("__Key");
    auto *hinted = menu->addAction("__Key");
    hinted->setToolTip("__Hint");
    auto *status = menu->addAction("~~OK");
    status->setStatusTip("__Hint");
    auto *box = new QGroupBox("__Key", central);
    auto *check = new QCheckBox("__Key", box);
    check->setAccessibleName("__Hint");
    check->setAccessibleDescription("__Hint");
    auto *edit = new QLineEdit("__Key", box);
    edit->setPlaceholderText("~~OK");
    auto *plain = new QPlainTextEdit("__Key", box);
    auto *combo = new QComboBox(box);
    combo->setEditable(true);
    combo->addItems({"plain", "__Key", "Domain"});
    combo->setEditText("~~OK");
    auto *spin = new QSpinBox(box);
    spin->setSpecialValueText("__Key");
    auto *tabs = new QTabWidget(central);
    tabs->addTab(new QWidget, "__Key");
    tabs->addTab(new QLabel("~~OK"), "plain");
    auto *tools = new QToolBox(central);
    tools->addItem(new QWidget, "__Key");
    auto *list = new QListWidget(central);
    list->addItems({"__Key", "Domain"});
    auto *other = new QObject(central);
    other->setProperty("Filter", "__Key");
    other->setProperty("filter", "__Key");
    other->setProperty("Text", 7);

    m_language.TranslateForm(&form, "FORM");
    QCOMPARE(form.windowTitle(), "The form");
    QCOMPARE(dock->windowTitle(), "Text");
    QCOMPARE(menu->title(), "Fine");
    QCOMPARE(action->text(), "Text");
    QCOMPARE(action->toolTip(), "Text");
    QCOMPARE(hinted->toolTip(), "Short");
    QCOMPARE(hinted->statusTip(), "A longer one");
    QCOMPARE(status->statusTip(), "A longer one");
    QCOMPARE(box->title(), "Text");
    QCOMPARE(check->text(), "Text");
    QCOMPARE(check->accessibleName(), "Short");
    QCOMPARE(check->accessibleDescription(), "A longer one");
    QCOMPARE(edit->text(), "Text");
    QCOMPARE(edit->placeholderText(), "Fine");
    QCOMPARE(plain->toPlainText(), "Text");
    QCOMPARE(combo->itemText(1), "Text");
    QCOMPARE(combo->itemText(2), "Domain");
    QCOMPARE(combo->currentText(), "Fine");
    QCOMPARE(spin->text(), "Text");
    QCOMPARE(tabs->tabText(0), "Text");
    QCOMPARE(tabs->widget(1)->property("text"), "Fine");
    QCOMPARE(tools->itemText(0), "Text");
    QCOMPARE(list->item(0)->text(), "Text");
    QCOMPARE(list->item(1)->text(), "Domain");
    QCOMPARE(other->property("Filter"), "Text");
    QCOMPARE(other->property("filter"), "__Key");
    QCOMPARE(other->property("Text"), 7);
  }

  // Once a marked item was seen, later ones without a marker are looked up too, without their first two characters.
  void ItemsCarryTheSectionOver_data() {
    QTest::addColumn<QStringList>("items");
    QTest::addColumn<QString>("translated");
    QTest::newRow("plain before any marker") << QStringList{"Domain", "__Key", "xxain"} << "Domain Text carried";
    QTest::newRow("no such key") << QStringList{"__Key", "Other", "xx", "x", ""} << "Text Other xx x ";
    QTest::newRow("missing marked key") << QStringList{"__None", "xxKey"} << "__None Text";
    QTest::newRow("section replaced") << QStringList{"__Key", "~~OK", "xxKey", "xxx", "__None", "xxKey"}
                                      << "Text Fine xxKey single __None Text";
    QTest::newRow("too short for a marker") << QStringList{"__", "xxKey", "~~x", "xxKey"} << "__ xxKey single xxKey";
    QTest::newRow("empty text") << QStringList{"__Empty", "xxEmpty"} << "__Empty xxEmpty";
  }
  void ItemsCarryTheSectionOver() {
    QFETCH(QStringList, items);
    QFETCH(QString, translated);
    QCOMPARE(Nodes(items, m_language, true), translated);
    QCOMPARE(Nodes(items, m_language, false), translated);

    QTreeWidget list;
    list.setRootIsDecorated(false);
    list.setHeaderLabels(items);
    auto *node = new QTreeWidgetItem(&list, {"__Key"});
    QTableWidget table(2, int(items.size()));
    table.setHorizontalHeaderLabels(items);
    TBands bands;
    bands.m_texts = items;
    for (QWidget *widget : QWidgetList{&list, &table, &bands}) m_language.TranslateForm(widget, "FORM");
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

  void TheSectionStartsEmptyForEveryComponent() {
    QWidget form;
    auto *first = new QTreeWidget(&form);
    auto *second = new QTreeWidget(&form);
    new QTreeWidgetItem(first, {"__Key"});
    auto *node = new QTreeWidgetItem(second, {"xxKey"});
    m_language.TranslateForm(&form, "FORM");
    QCOMPARE(node->text(0), "xxKey");
  }

  void BrokenFilesLeaveMarkersAndUndefined_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("zeros") << QByteArray(5000, '\0');
    QTest::newRow("high bytes") << QByteArray(5000, '\xFF');
    QTest::newRow("brackets") << QByteArray(5000, '[');
  }
  void BrokenFilesLeaveMarkersAndUndefined() {
    QFETCH(QByteArray, bytes);
    TLanguage language;
    QVERIFY(language.LoadFile(WriteLanguage(m_folder->path(), "broken.ini", bytes)));
    QCOMPARE(language.Global("OK"), "UNDEFINED: GLOBAL > OK");
    QLabel label("__Key");
    language.TranslateForm(&label, "FORM");
    QCOMPARE(label.text(), "__Key");
    language.InstallToolkitTranslations(&label);
  }

  void LoadFollowsTheSetting_data() {
    QTest::addColumn<QString>("setting");
    QTest::addColumn<QString>("current");
    QTest::newRow("not set") << QString() << "zveng.ini";
    QTest::newRow("there") << "my.ini"
                           << "my.ini";
    QTest::newRow("gone") << "gone.ini"
                          << "zveng.ini";
    QTest::newRow("a folder") << "folder.ini"
                              << "zveng.ini";
    QTest::newRow("outside") << "../secret.ini"
                             << "zveng.ini";
    QTest::newRow("empty") << ""
                           << "zveng.ini";
  }
  void LoadFollowsTheSetting() {
    QFETCH(QString, setting);
    QFETCH(QString, current);
    const QString own = ProgramFolders::UserData() + "/Languages";
    WriteLanguage(own, "my.ini", "[GLOBAL]\nOK=Mine\n");
    WriteLanguage(own, "../secret.ini", "[GLOBAL]\nOK=Secret\n");
    QDir(own).mkdir("folder.ini");
    TRegistryStore store(m_folder->filePath("registry.sqlite"));
    TZVOptions options(store);
    if (!setting.isNull()) options.Set(Setting::LanguageFile, setting);
    TLanguage language;
    language.Load(options);
    QCOMPARE(language.FileName(), current);
    QCOMPARE(options.Get(Setting::LanguageFile), current);
    QCOMPARE(language.Global("OK"), current == "my.ini" ? "Mine" : "OK");
  }

  void TheMenuListsFilesAndStoresTheChoice() {
    QGuiApplication::setApplicationDisplayName("Zarvela");
    const QString own = ProgramFolders::UserData() + "/Languages";
    WriteLanguage(own, "ZVENG.INI", "[INFO]\nLanguage=Shouting\n");
    WriteLanguage(own, "zveng.ini", "[INFO]\nLanguage=Mine\n");
    WriteLanguage(own, "nameless.ini",
                  "\xFF\xFE"
                  "junk");
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
    QVERIFY(box != nullptr && box->isVisible());
    QCOMPARE(box->windowTitle(), "Zarvela");
    QCOMPARE(box->text(), "Start again");
    QCOMPARE(box->buttons().size(), 1);
    QCOMPARE(box->buttons().first()->text(), "Fine");
    QTest::keyClick(box, Qt::Key_Return);
    QTRY_VERIFY(box == nullptr);
    QCOMPARE(language.FileName(), "ZVENG.INI");
    QCOMPARE(TZVOptions(store).Get(Setting::LanguageFile), "ZVENG.INI");
    open();
    QVERIFY(entries["Shouting"]->isChecked() && !entries["Mine"]->isChecked());
  }

  void AMainWindowIsQuick() {
    QMainWindow form;
    for (int i = 0; i < 15; ++i) {
      QMenu *menu = form.menuBar()->addMenu("__Caption");
      for (int k = 0; k < 20; ++k) menu->addAction("__Key")->setToolTip("__Hint");
    }
    QElapsedTimer timer;
    timer.start();
    m_language.TranslateForm(&form, "FORM");
    qInfo("300 actions: %.2f ms", timer.nsecsElapsed() / 1e6);
    QVERIFY(timer.elapsed() < 500);
  }

 private:
  std::unique_ptr<QTemporaryDir> m_folder;
  TLanguage m_language;
};

QTEST_MAIN(TTestLanguage)
#include "test_language.moc"
