#include <QDialog>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include "app/main_window.h"
#include "browser/tabs/browser_tab.h"
#include "config/options.h"
#include "support/shipped_files.h"

// What the main window makes of the text that a later start hands over.
class TestReceivedText final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { UseShippedLanguages(); }
  void init();
  void cleanup();

  void Opens_data();
  void Opens();
  void ComesToTheFront();
  void DroppedWhileADialogAsks();
  void BeforeTheStartIsDone();

 private:
  std::unique_ptr<QTemporaryDir> m_folder;
  std::unique_ptr<TRegistryStore> m_store;
  std::unique_ptr<TfrmMain> m_window;
};

void TestReceivedText::init() {
  m_folder = std::make_unique<QTemporaryDir>();
  m_store = std::make_unique<TRegistryStore>(m_folder->filePath(QStringLiteral("registry.sqlite")));
  TZVOptions options(*m_store);
  options.Set(Setting::StartupMode, QStringLiteral("Blank"));
  options.Set(Setting::ConfirmShutdown, false);
  m_window = std::make_unique<TfrmMain>(*m_store);
  m_window->show();
}

void TestReceivedText::cleanup() {
  m_window.reset();
  m_store.reset();
  m_folder.reset();
}

void TestReceivedText::Opens_data() {
  QTest::addColumn<QString>("file");   // made in the test's folder, whose place "%1" takes in the text
  QTest::addColumn<QString>("text");
  QTest::addColumn<bool>("asGroup");
  QTest::addColumn<bool>("asTab");
  QTest::newRow("an address") << "" << "about:blank#a" << false << true;
  QTest::newRow("a group") << "My set.hgp" << "%1/My set.hgp" << true << false;
  QTest::newRow("a group that is not there") << "" << "%1/none.hgp" << false << true;
  QTest::newRow("capitals are another extension") << "set.HGP" << "%1/set.HGP" << false << true;
  QTest::newRow("a page") << "page.html" << "%1/page.html" << false << true;
  QTest::newRow("a switch is an address") << "" << "--new" << false << true;
  QTest::newRow("nothing") << "" << "" << false << false;
}

void TestReceivedText::Opens() {
  QFETCH(QString, file);
  QFETCH(QString, text);
  QFETCH(bool, asGroup);
  QFETCH(bool, asTab);
  QTRY_VERIFY(!m_window->findChild<QTimer *>(QStringLiteral("tmrLoadCoolbar"))->isActive());
  // What is opened as a group gives its name to the tab.
  QFile made(m_folder->filePath(file));
  if (!file.isEmpty()) {
    QVERIFY(made.open(QIODevice::WriteOnly));
    made.write("[HalvexGroup]\nfrom the group=about:blank#a\n");
    made.close();
  }
  text.replace(QStringLiteral("%1"), m_folder->path());
  m_window->wmCopyDataDataReceived(text);
  TTabStrip &tabs = m_window->Tabs();
  QCOMPARE(tabs.TabCount(), asTab || asGroup ? 2 : 1);
  QCOMPARE(tabs.Tab(tabs.TabCount() - 1)->StickyName(), QString(asGroup ? "from the group" : ""));
  if (asTab) QCOMPARE(tabs.GetActivePage()->Url(), text);
}

void TestReceivedText::ComesToTheFront() {
  QTRY_VERIFY(!m_window->findChild<QTimer *>(QStringLiteral("tmrLoadCoolbar"))->isActive());
  QWidget other;
  other.show();
  other.activateWindow();
  QVERIFY(QTest::qWaitForWindowActive(&other));
  m_window->showMinimized();
  m_window->wmCopyDataDataReceived(QString());
  QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
  QVERIFY(!m_window->isMinimized());
  QCOMPARE(m_window->Tabs().TabCount(), 1);
}

void TestReceivedText::DroppedWhileADialogAsks() {
  QTRY_VERIFY(!m_window->findChild<QTimer *>(QStringLiteral("tmrLoadCoolbar"))->isActive());
  QDialog dialog(m_window.get());
  dialog.open();
  QVERIFY(QTest::qWaitForWindowExposed(&dialog));
  m_window->wmCopyDataDataReceived(QStringLiteral("about:blank"));
  QCOMPARE(m_window->Tabs().TabCount(), 1);
  QTRY_VERIFY(dialog.isActiveWindow());
  dialog.reject();
  m_window->wmCopyDataDataReceived(QStringLiteral("about:blank"));
  QCOMPARE(m_window->Tabs().TabCount(), 2);
}

void TestReceivedText::BeforeTheStartIsDone() {
  const auto *start = m_window->findChild<QTimer *>(QStringLiteral("tmrLoadCoolbar"));
  QVERIFY(start->isActive());
  m_window->wmCopyDataDataReceived(QStringLiteral("about:blank#later"));
  QCOMPARE(m_window->Tabs().TabCount(), 1);
  QTRY_COMPARE(m_window->Tabs().TabCount(), 2);
  // The tab that was there belongs to the pages of the start.
  QVERIFY(m_window->Tabs().Tab(0)->Url() != QStringLiteral("about:blank#later"));
  QCOMPARE(m_window->Tabs().GetActivePage()->Url(), QStringLiteral("about:blank#later"));
}

QTEST_MAIN(TestReceivedText)
#include "test_received_text.moc"
