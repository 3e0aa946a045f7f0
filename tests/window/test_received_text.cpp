#include <QDialog>
#include <QFile>

#include "actions/actions.h"
#include "support/data_row.h"
#include "window/main_window_fixture.h"

// What the main window makes of the text that a later start hands over.
class TestReceivedText final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { m_f.Prepare(); }
  void init() { m_f.Begin(); }
  void cleanup() { m_f.End(); }

  void Opens_data() {
    // The text of a file is its name, which is made in the test's folder.
    Columns<QString, bool, bool>("text", "asGroup", "asTab");
    Row("an address", "about:blank#a", false, true);
    Row("a group", "My set.hgp", true, false);
    Row("capitals are another extension", "set.HGP", false, true);
    Row("a switch is an address", "--new", false, true);
    Row("nothing", "", false, false);
  }
  void Opens() {
    QFETCH(QString, text);
    QFETCH(bool, asGroup);
    QFETCH(bool, asTab);
    m_f.Open();
    // What is opened as a group gives its name to the tab.
    if (text.endsWith(QStringLiteral(".hgp"), Qt::CaseInsensitive)) {
      text = m_f.Path(text);
      QFile made(text);
      QVERIFY(made.open(QIODevice::WriteOnly));
      made.write("[HalvexGroup]\nfrom the group=about:blank#a\n");
    }
    m_f.window->wmCopyDataDataReceived(text);
    TTabStrip &tabs = m_f.window->Tabs();
    QCOMPARE(tabs.TabCount(), asTab || asGroup ? 2 : 1);
    QCOMPARE(tabs.Tab(tabs.TabCount() - 1)->StickyName(), QString(asGroup ? "from the group" : ""));
    if (asTab) QCOMPARE(tabs.GetActivePage()->Url(), text);
  }

  void ComesToTheFront_data() {
    Columns<Qt::WindowState>("state");
    QTest::newRow("normal") << Qt::WindowNoState;
    QTest::newRow("maximised") << Qt::WindowMaximized;
    QTest::newRow("full screen") << Qt::WindowFullScreen;
  }
  void ComesToTheFront() {
    QFETCH(Qt::WindowState, state);
    m_f.Open();
    if (state == Qt::WindowFullScreen) {
      m_f.window->Actions()[TCommand::FullScreen]->trigger();
    } else {
      m_f.window->setWindowState(state);
    }
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    m_f.window->wmCopyDataDataReceived(QString());
    QVERIFY(QTest::qWaitForWindowActive(m_f.window.get()));
    QCOMPARE(m_f.window->windowState() & ~Qt::WindowActive, state);
    m_f.window->setWindowState(m_f.window->windowState() | Qt::WindowMinimized);
    m_f.window->wmCopyDataDataReceived(QString());
    QVERIFY(QTest::qWaitForWindowActive(m_f.window.get()));
    QCOMPARE(m_f.window->windowState() & ~Qt::WindowActive, state);
    QCOMPARE(m_f.window->Tabs().TabCount(), 1);
  }

  void DroppedWhileADialogAsks() {
    m_f.Open();
    QDialog dialog(m_f.window.get());
    dialog.open();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    m_f.window->wmCopyDataDataReceived(QStringLiteral("about:blank"));
    QCOMPARE(m_f.window->Tabs().TabCount(), 1);
    QTRY_VERIFY(dialog.isActiveWindow());
    dialog.reject();
    m_f.window->wmCopyDataDataReceived(QStringLiteral("about:blank"));
    QCOMPARE(m_f.window->Tabs().TabCount(), 2);
  }

  void BeforeTheStartIsDone() {
    m_f.Show();
    QVERIFY(m_f.IsStarting());
    m_f.window->wmCopyDataDataReceived(QStringLiteral("about:blank#later"));
    QCOMPARE(m_f.window->Tabs().TabCount(), 1);
    QTRY_COMPARE(m_f.window->Tabs().TabCount(), 2);
    // The tab that was there belongs to the pages of the start.
    QVERIFY(m_f.window->Tabs().Tab(0)->Url() != QStringLiteral("about:blank#later"));
    QCOMPARE(m_f.window->Tabs().GetActivePage()->Url(), QStringLiteral("about:blank#later"));
  }

 private:
  TMainWindowFixture m_f;
};

int main(int argc, char **argv) {
  return RunWithEngine<TestReceivedText>(argc, argv);
}

#include "test_received_text.moc"
