#include <QCheckBox>
#include <QMessageBox>

#include "groups/halvex_group_dialog.h"
#include "support/list_editor_driver.h"
#include "support/modal_dialogs.h"
#include "window/groups_fixture.h"

// The editor of page groups: what it makes of a file, and what it writes.
class TestGroupEditor final : public QObject, private TGroupsFixture {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { Prepare(); }
  void init() { Begin(); }
  void cleanup() {
    m_editor.reset();
    End();
  }

  void Edits() {
    const QString path = Put(u"g.hgp"_s, u"a=1\nBlank9=*2\nb=3\nblank4=4"_s);
    const TListEditorDriver editor = Open(path);
    const QString caption = language.Text("HalvexGroups", "HalvexGroup");
    QCOMPARE(m_editor->windowTitle(), caption + u": g.hgp"_s);
    QCOMPARE(editor.Shown(), (QStringList{"a|1|", "|2|X", "b|3|", "|4|"}));
    editor.Click("cmdUpdate");
    QVERIFY(!editor.List().isEnabled());
    QCOMPARE(m_editor->focusWidget()->objectName(), u"edtLocation"_s);
    editor.Enter(u"a"_s, u"  "_s);
    QVERIFY(editor.IsEditing());  // A page needs an address...
    editor.Enter(u" A=A"_s, u" 11 "_s);
    editor.Select(1);
    editor.Click("cmdUpdate");
    editor.Enter(QString(), u"22"_s);  // its lock stays
    editor.Click("cmdInsert");
    editor.Part<QCheckBox>("chkTabLocked").setChecked(true);
    editor.Enter(QString(), u"5"_s);  // ... and no name.
    QCOMPARE(editor.Shown(), (QStringList{" A=A|11|", "|22|X", "b|3|", "|4|", "|5|X"}));
    editor.Select(2);
    editor.Click("cmdDelete");
    // Somebody has removed the file meanwhile: the user's work is written all the same.
    QVERIFY(QFile::remove(path));
    editor.Click("cmdOk");
    QCOMPARE(m_editor->result(), int(QDialog::Accepted));
    // Names are free of "=", and what has none is numbered by its position.
    QCOMPARE(Lines(path), u"AA=11\nblank2=*22\nblank3=4\nblank4=*5"_s);
  }

  void Cancels() {
    const QString path = Put(u"g.hgp"_s, u"a = 1\n;note\n\nb=2"_s);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray before = file.readAll();
    OnModalDialog<TfrmHalvexGroup>([](TfrmHalvexGroup &dialog) {
      const TListEditorDriver editor = DriverOf(dialog);
      editor.Click("cmdDelete");
      editor.Click("cmdCancel");
    });
    groups->Organize(path);
    QVERIFY(file.seek(0));
    QCOMPARE(file.readAll(), before);
  }

  void TellsRefusedWrite() {
    const QString path = Put(u"sub/g.hgp"_s, u"a=1"_s);
    const TListEditorDriver editor = Open(path);
    QVERIFY(QDir(QFileInfo(path).path()).removeRecursively());
    editor.Click("cmdOk");
    QVERIFY(m_editor->isVisible());
    const auto &box = *m_editor->findChild<QMessageBox *>();
    QVERIFY2(box.text().contains(u"g.hgp"_s), qPrintable(box.text()));
    QVERIFY(QDir().mkpath(QFileInfo(path).path()));
    editor.Click("cmdOk");
    QCOMPARE(Lines(path), u"a=1"_s);
  }

 private:
  [[nodiscard]] static TListEditorDriver DriverOf(TfrmHalvexGroup &dialog) {
    return {dialog, "lstSites", {"edtTitle", "edtLocation"}};
  }
  [[nodiscard]] TListEditorDriver Open(const QString &path) {
    m_editor = std::make_unique<TfrmHalvexGroup>(language, path);
    m_editor->show();
    return DriverOf(*m_editor);
  }

  std::unique_ptr<TfrmHalvexGroup> m_editor;
};

ENGINE_MAIN(TestGroupEditor)
#include "test_group_editor.moc"
