#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>

#include "chrome/open_dialog.h"
#include "config/registry_paths.h"
#include "support/data_row.h"
#include "support/desktop_files.h"
#include "support/modal_dialogs.h"
#include "window/main_window_fixture.h"

using namespace Qt::StringLiterals;

// The dialog that asks what to open, in the main window with real pages.
class TestOpenDialog final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    m_f.Prepare();
    m_f.server.RoutePage("/a", "Page A");
    m_f.server.RoutePage("/b", "Page B");
  }
  void init() {
    m_f.Begin();
    for (int i = 1; i <= 2; ++i) {
      m_f.store->Write(TRegistryHive::CurrentUser, QString::fromLatin1(RegistryKey::TypedUrls), u"url%1"_s.arg(i),
                       u"http://typed%1.test/"_s.arg(i));
    }
    m_f.Open();
  }
  void cleanup() { m_f.End(); }

  void BeginsEmpty() {
    Ask();
    QCOMPARE(Box()->currentText(), QString());
    QVERIFY(!OK()->isEnabled() && NewTab()->isChecked());
    QTRY_VERIFY2(Box()->hasFocus(), qPrintable(QDebug::toString(QApplication::focusWidget())));
    QStringList offered;
    for (int i = 0; i < Box()->count(); ++i) offered.append(Box()->itemText(i));
    QCOMPARE(offered, (QStringList{u"http://typed1.test/"_s, u"http://typed2.test/"_s}));
    // Enter does nothing while there is nothing to open, and what is emptied again is nothing.
    QTest::keyClick(Box(), Qt::Key_Return);
    QVERIFY(m_dialog->isVisible());
    // Nothing is added to what is typed.
    QTest::keyClicks(Box(), u"h"_s);
    QCOMPARE(Box()->currentText(), u"h"_s);
    QVERIFY(OK()->isEnabled());
    QTest::keyClick(Box(), Qt::Key_Backspace);
    QVERIFY(!OK()->isEnabled());
    QTest::keyClick(Box(), Qt::Key_Down);
    QVERIFY(OK()->isEnabled() && Box()->currentText() == u"http://typed1.test/"_s);
    QTest::keyClick(Box(), Qt::Key_Escape);
    QTRY_VERIFY(!m_dialog);
    QCOMPARE(m_f.window->Tabs().TabCount(), 1);
  }

  void Opens_data() {
    Columns<QString, bool, bool, int>("text", "newTab", "setting", "tabs");
    Row("in a new tab", "/a", true, false, 2);
    Row("in this tab", "/a", false, false, 1);
    // What typed addresses do otherwise is not asked: the box is right there.
    Row("in this tab all the same", "/a", false, true, 1);
    Row("a group", "group.hgp", true, false, 3);
  }
  void Opens() {
    QFETCH(QString, text);
    QFETCH(bool, newTab);
    QFETCH(bool, setting);
    m_f.window->Settings().Set(Setting::AddressNewWin, setting);
    const bool isGroup = text.endsWith(u".hgp"_s);
    if (isGroup) {
      DesktopFiles::Write(m_f.Path(text), "[HalvexGroup]\na=" + m_f.server.Url(u"/a"_s).toUtf8() +
                                              "\nb=" + m_f.server.Url(u"/b"_s).toUtf8() + '\n');
    }
    Ask();
    NewTab()->setChecked(newTab);
    QTest::keyClicks(Box(), isGroup ? m_f.Path(text) : m_f.server.Url(text));
    QTest::keyClick(Box(), Qt::Key_Return);
    QTRY_VERIFY(!m_dialog);
    QTRY_VERIFY_WITH_TIMEOUT(m_f.server.RequestCount("/a") > 0, m_f.LoadTime);
    QTRY_VERIFY_WITH_TIMEOUT(!isGroup || m_f.server.RequestCount("/b") > 0, m_f.LoadTime);
    QTEST(m_f.window->Tabs().TabCount(), "tabs");
  }

  void Browses_data() {
    Columns<QString, QString, QString>("typed", "chosen", "text");
    Row("file", "typed", "page.html", "page.html");
    Row("given up with a text", "typed", "", "typed");
    Row("given up without one", "", "", "");
  }
  void Browses() {
    QFETCH(QString, typed);
    QFETCH(QString, chosen);
    QFETCH(QString, text);
    const QString file = m_f.Path(u"page.html"_s);
    DesktopFiles::Write(file, "<title>File</title>");
    Ask();
    Box()->setEditText(typed);
    OnModalDialog<QFileDialog>([&](QFileDialog &dialog) {
      if (chosen.isEmpty()) return dialog.reject();
      dialog.findChild<QLineEdit *>()->setText(file);
      QTest::keyClick(dialog.findChild<QLineEdit *>(), Qt::Key_Return);
    });
    m_dialog->findChild<QPushButton *>(u"cmdBrowse"_s)->click();
    QTRY_VERIFY(m_dialog->findChild<QFileDialog *>() == nullptr);
    QCOMPARE(Box()->currentText(), text == u"page.html"_s ? file : text);
    QCOMPARE(OK()->isEnabled(), !text.isEmpty());
  }

 private:
  void Ask() {
    m_f.window->Actions()[TCommand::OpenFile]->trigger();
    m_dialog = m_f.window->findChild<TfrmOpen *>();
    QVERIFY(m_dialog && m_dialog->isVisible());
    QVERIFY(QTest::qWaitForWindowActive(m_dialog));
  }
  [[nodiscard]] QComboBox *Box() const { return m_dialog->findChild<QComboBox *>(u"ComboBox1"_s); }
  [[nodiscard]] QPushButton *OK() const { return m_dialog->findChild<QPushButton *>(u"cmdOK"_s); }
  [[nodiscard]] QCheckBox *NewTab() const { return m_dialog->findChild<QCheckBox *>(u"chkNewTab"_s); }

  TMainWindowFixture m_f;
  QPointer<TfrmOpen> m_dialog;
};

ENGINE_MAIN(TestOpenDialog)
#include "test_open_dialog.moc"
