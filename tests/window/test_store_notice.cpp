#include <QApplication>
#include <QMessageBox>
#include <QtTest>

#include "app/store_notice.h"
#include "config/language.h"
#include "history/history_store.h"
#include "store/registry_store.h"
#include "support/data_row.h"
#include "support/shipped_files.h"
#include "support/store_trouble.h"

// What the user is told of a history that cannot be kept as he wants it.
class TestStoreNotice final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { QVERIFY(m_language.LoadFile(SourceFile(QStringLiteral("Languages/zveng.ini")))); }
  void init() {
    m_folder = std::make_unique<QTemporaryDir>();
    m_registry = std::make_unique<TRegistryStore>(m_folder->filePath("registry.sqlite"));
    m_history = std::make_unique<THistoryStore>(m_folder->filePath("data/history.sqlite"));
    m_notice = std::make_unique<TStoreNotice>(&m_window, *m_registry, *m_history, m_language);
    m_window.show();
  }
  void cleanup() {
    m_notice.reset();
    m_history.reset();
    m_registry.reset();
  }

  void DamagedHistory_data() {
    Columns<bool>("isLater");
    Row("found by the start", false);
    Row("found later", true);
  }
  void DamagedHistory() {
    QFETCH(bool, isLater);
    QDir().mkpath(m_folder->filePath("data"));
    QFile file(m_history->FilePath());
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(QByteArray(5000, 'x')) > 0);
    file.close();
    if (isLater) m_notice->Begin();
    m_history->AddVisit("http://a.example/", "Page");
    if (!isLater) {
      QVERIFY(m_history->Flush() && Told().isEmpty());
      m_notice->Begin();
    }
    QTRY_COMPARE(Told(), m_language.Text("HISTORY", "SetAside").arg("history.sqlite.damaged-1"));
    CloseOne();
    QVERIFY(m_history->Flush());
    QCoreApplication::processEvents();
    QVERIFY(Boxes().isEmpty());
  }

  void RemovalThatFails() {
    m_notice->Begin();
    m_history->AddVisit("http://a.example/", "Page");
    QVERIFY(m_history->Flush());
    const TMissingFolder missing(m_folder->filePath("data"));
    m_history->Remove("http://a.example/");
    QTRY_COMPARE(Told(), m_language.Text("HISTORY", "NotRemoved"));
    CloseOne();
    QVERIFY(!m_history->Flush(500));
    QCoreApplication::processEvents();
    QVERIFY(Boxes().isEmpty());
  }

 private:
  [[nodiscard]] QList<QMessageBox *> Boxes() const {
    QList<QMessageBox *> boxes;
    for (QMessageBox *box : m_window.findChildren<QMessageBox *>()) {
      if (box->isVisible()) boxes.append(box);
    }
    return boxes;
  }
  // Empty unless it is one message.
  [[nodiscard]] QString Told() const { return Boxes().size() == 1 ? Boxes().first()->text() : QString(); }
  void CloseOne() const { Boxes().first()->close(); }

  TLanguage m_language;
  QWidget m_window;
  std::unique_ptr<QTemporaryDir> m_folder;
  std::unique_ptr<TRegistryStore> m_registry;
  std::unique_ptr<THistoryStore> m_history;
  std::unique_ptr<TStoreNotice> m_notice;
};

QTEST_MAIN(TestStoreNotice)
#include "test_store_notice.moc"
