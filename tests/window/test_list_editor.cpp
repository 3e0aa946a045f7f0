#include <QCheckBox>
#include <QLabel>

#include "config/language.h"
#include "support/data_row.h"
#include "support/list_editor_driver.h"
#include "support/shipped_files.h"
#include "ui/list_editor.h"
#include "ui/table_rows.h"

using namespace Qt::StringLiterals;

namespace {

using TRests = TListForm::TRests;

constexpr TListColumn Parts[] = {
    {{"GLOBAL", "OK"}, {"GLOBAL", "OK"}, "edtName"},
    {{"GLOBAL", "Yes"}, {"GLOBAL", "Yes"}, "edtAddress"},
    {{"GLOBAL", "No"}, {"GLOBAL", "No"}, "chkFlag", true},
};
constexpr TListForm ButtonsRest{.list = "lstTest", .columns = Parts};
constexpr TListForm ListRests{.list = "lstTest", .columns = Parts, .updateBox = 1, .rests = TRests::List};

// Takes every entry with an address, in upper case.
class TTestEditor final : public TListEditor {
 public:
  TTestEditor(const TLanguage &language, const TListForm &form, const QStringList &cells, const QString &note = {})
      : TListEditor(language, form, nullptr) {
    Begin(u"Caption"_s, cells, note);
    show();
  }
  [[nodiscard]] bool Accepts(QStringList &entry) const override {
    entry[1] = entry.at(1).toUpper();
    return !entry.at(1).isEmpty();
  }
  [[nodiscard]] bool Save() override {
    for (int row = 0; row < Rows().Count(); ++row) saved.append(Rows().At(row));
    return canSave;
  }
  [[nodiscard]] TListEditorDriver Driver() { return {*this, "lstTest", {"edtName", "edtAddress"}}; }

  bool canSave = true;
  QStringList saved;
};

const QStringList Cells{"a", "1", "", "b", "2", "X", "c", "3", ""};

}  // namespace

// What all list editors have in common; each one's own rules are tested with it.
class TestListEditor final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { QVERIFY(m_language.LoadFile(SourceFile(QStringLiteral("Languages/zveng.ini")))); }

  void ButtonsFollow_data() {
    Columns<TRests, QString, bool>("rests", "updating", "isListOn");
    Row("buttons rest", TRests::Buttons, "", true);
    Row("list rests", TRests::List, "Insert Update Delete Up Down", false);
  }
  void ButtonsFollow() {
    QFETCH(TRests, rests);
    TTestEditor editor(m_language, rests == TRests::List ? ListRests : ButtonsRest, Cells, u"Note"_s);
    const TListEditorDriver driver = editor.Driver();
    QCOMPARE(driver.Shown(), (QStringList{"a|1|", "b|2|X", "c|3|"}));
    QCOMPARE(driver.Enabled(), u"Insert Update Delete Up Down Ok"_s);  // The first row is selected.
    driver.List().clearSelection();
    QCOMPARE(driver.Enabled(), u"Insert Ok"_s);
    driver.Select(1);
    const int height = editor.height();
    driver.Click("cmdUpdate");
    QTEST(driver.Enabled(), "updating");
    QTEST(driver.List().isEnabled(), "isListOn");
    QCOMPARE(driver.Part<QPushButton>("cmdUrlInsert").text(), m_language.Global("Update"));
    QCOMPARE(driver.Entered(), (QStringList{"b", "2"}));
    QVERIFY(driver.Part<QCheckBox>("chkFlag").isChecked());
    QCOMPARE(editor.focusWidget()->objectName(), rests == TRests::List ? u"edtAddress"_s : u"edtName"_s);
    QVERIFY(editor.height() > height);
    driver.Click("cmdUrlCancel");
    QCOMPARE(editor.height(), height);
    QCOMPARE(driver.Enabled(), u"Insert Update Delete Up Down Ok"_s);
    QVERIFY(driver.List().isEnabled());
    QCOMPARE(editor.focusWidget(), &driver.List());
    QVERIFY(driver.Part<QLabel>("lblNote").isVisible());
    QVERIFY(!TTestEditor(m_language, ListRests, {}).Driver().Part<QLabel>("lblNote").isVisible());
  }

  void Edits() {
    TTestEditor editor(m_language, ButtonsRest, Cells);
    const TListEditorDriver driver = editor.Driver();
    driver.Click("cmdInsert");
    QCOMPARE(driver.Part<QPushButton>("cmdUrlInsert").text(), m_language.Global("Insert"));
    QCOMPARE(driver.Entered(), (QStringList{"", ""}));
    driver.Enter(u"new"_s, QString());  // refused silently
    QVERIFY(driver.IsEditing());
    driver.Part<QCheckBox>("chkFlag").setChecked(true);
    driver.Enter(u"new"_s, u"x"_s);
    QVERIFY(!driver.IsEditing() && editor.isVisible());
    QCOMPARE(driver.Shown(), (QStringList{"a|1|", "b|2|X", "c|3|", "new|X|X"}));
    QCOMPARE(driver.List().currentIndex().row(), 3);
    // The entry that is changed is the one from before, whatever is selected by now.
    driver.Select(1);
    const QPoint second = driver.List().visualRect(driver.List().currentIndex()).center();
    QTest::mouseClick(driver.List().viewport(), Qt::LeftButton, {}, second);
    QTest::mouseDClick(driver.List().viewport(), Qt::LeftButton, {}, second);
    QVERIFY(driver.IsEditing());
    driver.Enter(u"b"_s, QString(100'000, u'y'));
    driver.Click("cmdUpdate");
    QCOMPARE(driver.Entered().at(1), QString(100'000, u'Y'));  // no box cuts it
    driver.Select(0);
    driver.Enter(u"B"_s, u"y"_s);
    QCOMPARE(driver.Shown(), (QStringList{"a|1|", "B|Y|X", "c|3|", "new|X|X"}));
    // What was given up leaves nothing behind.
    driver.Click("cmdInsert");
    QVERIFY(!driver.Part<QCheckBox>("chkFlag").isChecked());
    driver.Click("cmdUrlCancel");
    driver.Select(2);
    QTest::keyClick(&driver.List(), Qt::Key_Delete);
    QCOMPARE(driver.Shown(), (QStringList{"a|1|", "B|Y|X", "new|X|X"}));
    QCOMPARE(driver.List().currentIndex().row(), 2);
    driver.Click("cmdDelete");
    QCOMPARE(driver.List().currentIndex().row(), 1);
    editor.canSave = false;
    driver.Click("cmdOk");
    QVERIFY(editor.isVisible());
    QCOMPARE(editor.saved, (QStringList{"a", "1", "", "B", "Y", "X"}));
    editor.canSave = true;
    QTest::keyClick(&editor, Qt::Key_Return);
    QCOMPARE(editor.result(), int(QDialog::Accepted));
  }

  void DeletesWhatIsEdited() {
    TTestEditor editor(m_language, ListRests, Cells);
    const TListEditorDriver driver = editor.Driver();
    driver.Click("cmdUpdate");
    driver.Click("cmdDown");  // The entry is followed.
    driver.Enter(u"A"_s, u"x"_s);
    QCOMPARE(driver.Shown(), (QStringList{"b|2|X", "A|X|", "c|3|"}));
    driver.Click("cmdUpdate");
    driver.Click("cmdDelete");
    QVERIFY(!driver.IsEditing());
    QCOMPARE(driver.Shown(), (QStringList{"b|2|X", "c|3|"}));
  }

  void Moves() {
    TTestEditor editor(m_language, ButtonsRest, Cells);
    const TListEditorDriver driver = editor.Driver();
    driver.Select(2);
    for (const auto &[button, rows] : {std::pair("cmdUp", "a|1| c|3| b|2|X"),
                                       {"cmdUp", "c|3| a|1| b|2|X"},
                                       {"cmdUp", "c|3| a|1| b|2|X"},
                                       {"cmdDown", "a|1| c|3| b|2|X"},
                                       {"cmdDown", "a|1| b|2|X c|3|"},
                                       {"cmdDown", "a|1| b|2|X c|3|"}}) {
      driver.Click(button);
      QCOMPARE(driver.Shown().join(u' '), QString::fromLatin1(rows));
    }
  }

  void EscapeGivesUpTheEntryFirst() {
    TTestEditor editor(m_language, ButtonsRest, Cells);
    const TListEditorDriver driver = editor.Driver();
    driver.Click("cmdInsert");
    QTest::keyClick(&driver.Part<QLineEdit>("edtName"), Qt::Key_Escape);
    QVERIFY(editor.isVisible() && !driver.IsEditing());
    QTest::keyClick(&editor, Qt::Key_Escape);
    QVERIFY(!editor.isVisible());
    // Cancel gives up both at once, and Enter is for the button that has the keyboard.
    editor.show();
    driver.Click("cmdInsert");
    driver.Part<QPushButton>("cmdCancel").setFocus();
    QTest::keyClick(&driver.Part<QPushButton>("cmdCancel"), Qt::Key_Return);
    QVERIFY(!editor.isVisible() && editor.saved.isEmpty());
  }

 private:
  TLanguage m_language;
};

QTEST_MAIN(TestListEditor)
#include "test_list_editor.moc"
