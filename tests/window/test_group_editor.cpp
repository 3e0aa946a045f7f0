#include <QAbstractItemView>
#include <QCheckBox>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>

#include "groups/halvex_group_dialog.h"
#include "support/modal_dialogs.h"
#include "window/groups_fixture.h"

namespace {

void Click(TfrmHalvexGroup *editor, const char *button) {
  editor->findChild<QPushButton *>(QString::fromLatin1(button))->click();
}

QAbstractItemView *ListOf(TfrmHalvexGroup *editor) {
  return editor->findChild<QAbstractItemView *>(QStringLiteral("lstSites"));
}

void Select(TfrmHalvexGroup *editor, int row) {
  ListOf(editor)->setCurrentIndex(ListOf(editor)->model()->index(row, 0));
}

void Fill(TfrmHalvexGroup *editor, const QString &name, const QString &location, bool locked) {
  editor->findChild<QLineEdit *>(QStringLiteral("edtTitle"))->setText(name);
  editor->findChild<QLineEdit *>(QStringLiteral("edtLocation"))->setText(location);
  editor->findChild<QCheckBox *>(QStringLiteral("chkTabLocked"))->setChecked(locked);
}

QString Shown(TfrmHalvexGroup *editor) {
  const QAbstractItemModel *model = ListOf(editor)->model();
  QStringList rows;
  for (int row = 0; row < model->rowCount(); ++row) {
    QStringList cells;
    for (int column = 0; column < model->columnCount(); ++column) {
      cells.append(model->index(row, column).data().toString());
    }
    rows.append(cells.join(QLatin1Char('|')));
  }
  return rows.join(QLatin1Char(' '));
}

}  // namespace

// The editor of page groups.
class TestGroupEditor final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { m_f.Prepare(); }
  void init() { m_f.Begin(); }
  void cleanup() {
    m_editor.reset();
    m_f.End();
  }

  void Edits();
  void Renumbers();
  void Cancels();
  void TellsRefusedWrite();
  void LargeGroup();

 private:
  TfrmHalvexGroup *OpenEditor(const QString &path);

  std::unique_ptr<TfrmHalvexGroup> m_editor;
  TGroupsFixture m_f;
};

TfrmHalvexGroup *TestGroupEditor::OpenEditor(const QString &path) {
  m_editor = std::make_unique<TfrmHalvexGroup>(m_f.language, path);
  m_editor->show();
  return m_editor.get();
}

void TestGroupEditor::Edits() {
  const QString path = m_f.Put(QStringLiteral("g.hgp"), QStringLiteral("a=1\nBlank9=*2\nb=3"));
  TfrmHalvexGroup *editor = OpenEditor(path);
  QVERIFY2(editor->windowTitle().endsWith(QLatin1String(": g.hgp")), qPrintable(editor->windowTitle()));
  QCOMPARE(Shown(editor), QStringLiteral("a|1| |2|X b|3|"));
  const auto isEnabled = [editor](const char *name) {
    return editor->findChild<QPushButton *>(QString::fromLatin1(name))->isEnabled();
  };
  editor->findChild<QAbstractItemView *>(QStringLiteral("lstSites"))->clearSelection();
  QVERIFY(isEnabled("cmdInsert") && !isEnabled("cmdUpdate") && !isEnabled("cmdDelete") && !isEnabled("cmdUp"));

  Click(editor, "cmdInsert");
  QVERIFY(!isEnabled("cmdOk"));  // which would drop what is being edited
  Fill(editor, QStringLiteral("new"), QString(), true);
  Click(editor, "cmdUrlInsert");  // refused silently
  QVERIFY(editor->findChild<QWidget *>(QStringLiteral("grpEdit"))->isVisible());
  Fill(editor, QStringLiteral("new"), QStringLiteral("4"), true);
  Click(editor, "cmdUrlInsert");
  QCOMPARE(Shown(editor), QStringLiteral("a|1| |2|X b|3| new|4|X"));
  QVERIFY(!editor->findChild<QWidget *>(QStringLiteral("grpEdit"))->isVisible());

  Select(editor, 0);
  QVERIFY(isEnabled("cmdUpdate") && isEnabled("cmdDelete") && isEnabled("cmdUp") && isEnabled("cmdDown"));
  Click(editor, "cmdUpdate");
  QCOMPARE(editor->findChild<QLineEdit *>(QStringLiteral("edtLocation"))->text(), QStringLiteral("1"));
  Fill(editor, QStringLiteral("A=A"), QStringLiteral("11"), false);
  QTest::keyClick(editor->findChild<QLineEdit *>(QStringLiteral("edtLocation")), Qt::Key_Return);
  QVERIFY(editor->isVisible());
  Click(editor, "cmdDown");
  Click(editor, "cmdDown");
  Click(editor, "cmdUp");
  Click(editor, "cmdUp");
  Click(editor, "cmdUp");
  Click(editor, "cmdDown");
  QCOMPARE(Shown(editor), QStringLiteral("|2|X A=A|11| b|3| new|4|X"));

  // Escape leaves the edit area, not the dialog; what was being changed and is deleted changes nothing else.
  Click(editor, "cmdUpdate");
  QTest::keyClick(editor->findChild<QLineEdit *>(QStringLiteral("edtTitle")), Qt::Key_Escape);
  QVERIFY(editor->isVisible());
  Select(editor, 2);
  Click(editor, "cmdUpdate");
  Click(editor, "cmdDelete");
  QVERIFY(!editor->findChild<QWidget *>(QStringLiteral("grpEdit"))->isVisible());
  Click(editor, "cmdOk");
  QCOMPARE(editor->result(), int(QDialog::Accepted));
  QCOMPARE(m_f.Lines(path), QStringLiteral("blank1=*2\nAA=11\nnew=*4"));
}

void TestGroupEditor::Renumbers() {
  const QString path = m_f.Put(QStringLiteral("g.hgp"), QStringLiteral("blank1=1\nblank2=2\nblank3=3"));
  TfrmHalvexGroup *editor = OpenEditor(path);
  Select(editor, 1);
  QTest::keyClick(ListOf(editor), Qt::Key_Delete);
  // Somebody has removed the file meanwhile: the user's work is written all the same.
  QVERIFY(QFile::remove(path));
  Click(editor, "cmdOk");
  QCOMPARE(m_f.Lines(path), QStringLiteral("blank1=1\nblank2=3"));
}

void TestGroupEditor::Cancels() {
  const QString path = m_f.Put(QStringLiteral("g.hgp"), QStringLiteral("a = 1\n;note\n\nb=2"));
  QFile file(path);
  QVERIFY(file.open(QIODevice::ReadOnly));
  const QByteArray before = file.readAll();
  OnModalDialog<TfrmHalvexGroup>([](TfrmHalvexGroup &editor) {
    Click(&editor, "cmdDelete");  // the first page is the selected one
    // Enter is for the button that has the keyboard, not for OK.
    auto *cancel = editor.findChild<QPushButton *>(QStringLiteral("cmdCancel"));
    cancel->setFocus();
    QTest::keyClick(cancel, Qt::Key_Return);
  });
  m_f.groups->Organize(path);
  QVERIFY(file.seek(0));
  QCOMPARE(file.readAll(), before);
}

void TestGroupEditor::TellsRefusedWrite() {
  const QString path = m_f.Put(QStringLiteral("sub/g.hgp"), QStringLiteral("a=1"));
  TfrmHalvexGroup *editor = OpenEditor(path);
  QVERIFY(QDir(QFileInfo(path).path()).removeRecursively());
  Click(editor, "cmdOk");
  QVERIFY(editor->isVisible() && editor->findChild<QMessageBox *>() != nullptr);
  QVERIFY(QDir().mkpath(QFileInfo(path).path()));
  Click(editor, "cmdOk");
  QCOMPARE(m_f.Lines(path), QStringLiteral("a=1"));
}

void TestGroupEditor::LargeGroup() {
  QString lines;
  for (int i = 0; i < 200'000; ++i) lines += QStringLiteral("blank%1=http://example.test/\n").arg(i + 1);
  const QString longOne = QStringLiteral("http://example.test/") + QString(100'000, QLatin1Char('a'));
  const QString path = m_f.Put(QStringLiteral("g.hgp"), QStringLiteral("long=%1\n%2").arg(longOne, lines));
  QElapsedTimer timer;
  timer.start();
  TfrmHalvexGroup *editor = OpenEditor(path);
  QVERIFY(!editor->grab().isNull());
  Select(editor, 0);
  Click(editor, "cmdUpdate");
  Click(editor, "cmdUrlInsert");
  Click(editor, "cmdOk");
  QVERIFY(m_f.Lines(path).startsWith(QStringLiteral("long=%1\nblank2=").arg(longOne)));
  qInfo("%lld ms", timer.elapsed());
  QVERIFY(timer.elapsed() < 20000);
}

int main(int argc, char **argv) {
  return RunWithEngine<TestGroupEditor>(argc, argv);
}

#include "test_group_editor.moc"
