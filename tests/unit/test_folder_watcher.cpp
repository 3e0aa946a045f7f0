#include <memory>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include "platform/folder_watcher.h"
#include "support/data_row.h"

namespace {

constexpr int Patience = 10000;  // milliseconds

bool Write(const QString &path) {
  QFile file(path);
  return file.open(QIODevice::WriteOnly) && file.write("x") == 1;
}

}  // namespace

class TTestFolderWatcher final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(QDir(m_folder->path()).mkpath("root/deep/deeper"));
    QVERIFY(Write(Path("root/old")));
    m_watcher = std::make_unique<TFolderWatcher>();
    m_changes = std::make_unique<QSignalSpy>(m_watcher.get(), &TFolderWatcher::Changed);
  }
  void cleanup() {
    m_watcher.reset();
    m_changes.reset();
    m_folder.reset();
  }

  void Tells_data() {
    Columns<QString>("steps");  // Each is waited for before the next.
    Row("new file", "write root/new");
    Row("removed file", "remove root/old");
    Row("renamed file", "rename root/old root/other");
    Row("file far below", "write root/deep/deeper/new");
    Row("file in a new folder", "make root/a, write root/a/new");
    Row("file far below in new folders", "make root/a/b/c, write root/a/b/c/new");
    Row("file in a renamed folder", "rename root/deep root/other, write root/other/new, write root/other/deeper/new");
    Row("file in a folder of a name used before", "replace root/deep, write root/deep/new, write root/deep-old/new");
    Row("file in a folder moved here", "rename outside root/outside, write root/outside/new");
    Row("the folder itself goes and comes", "clear root, make root, write root/new");
    Row("the folder itself is made anew at once", "renew root, write root/new");
    Row("its name is taken by another", "rename root other, rename outside root, write root/new");
  }
  void Tells() {
    QFETCH(QString, steps);
    QVERIFY(QDir(m_folder->path()).mkdir("outside"));
    m_watcher->Watch(Path("root"));
    QVERIFY(m_changes->wait(Patience));
    for (const QString &step : steps.split(", ")) {
      m_changes->clear();
      const QStringList words = step.split(u' ');
      const QString path = Path(words.at(1));
      bool isDone = false;
      if (words.first() == "write") isDone = Write(path);
      if (words.first() == "remove") isDone = QFile::remove(path);
      if (words.first() == "rename") isDone = QFile::rename(path, Path(words.at(2)));
      if (words.first() == "replace") isDone = QFile::rename(path, path + "-old") && QDir().mkpath(path);
      if (words.first() == "make") isDone = QDir().mkpath(path);
      if (words.first() == "clear") isDone = QDir(path).removeRecursively();
      if (words.first() == "renew") isDone = QDir(path).removeRecursively() && QDir().mkpath(path);
      QVERIFY2(isDone, qPrintable(step));
      QVERIFY2(!m_changes->isEmpty() || m_changes->wait(Patience), qPrintable(step));
    }
  }

  // A thousand changes in one go are no thousand rebuilt menus.
  void GathersChanges() {
    m_watcher->Watch(Path("root"));
    QVERIFY(m_changes->wait(Patience));
    m_changes->clear();
    QElapsedTimer clock;
    clock.start();
    for (int i = 0; i < 1000; ++i) QVERIFY(Write(Path("root/deep/" + QString::number(i))));
    QVERIFY(Write(Path("root/last")));
    QVERIFY(m_changes->wait(Patience));
    QVERIFY2(m_changes->size() <= clock.elapsed() / TFolderWatcher::Settle + 1,
             qPrintable(QString::number(m_changes->size())));
  }

  // Nothing outside the folder counts, the one watched before neither.
  void WatchesOneFolder() {
    QVERIFY(QDir(m_folder->path()).mkpath("second"));
    QVERIFY(QFile::link(Path("second"), Path("root/link")));
    m_watcher->Watch(Path("root"));
    m_watcher->Watch(Path("root/deep"));
    QVERIFY(m_changes->wait(Patience));
    // The witness is told what the other must not be, at the same time.
    TFolderWatcher witness;
    QSignalSpy seen(&witness, &TFolderWatcher::Changed);
    witness.Watch(m_folder->path());
    QVERIFY(seen.wait(Patience));
    const auto writes = [&](const QString &path) {
      seen.clear();
      return Write(Path(path)) && seen.wait(Patience);
    };
    QCOMPARE(m_changes->size(), 1);
    m_changes->clear();
    QVERIFY(writes("root/new") && writes("second/new") && writes("new"));
    QCOMPARE(m_changes->size(), 0);
    QVERIFY(writes("root/deep/new"));
    QTRY_COMPARE(m_changes->size(), 1);
    m_watcher->Stop();
    QVERIFY(writes("root/deep/other") && writes("root/deep/another"));
    QCOMPARE(m_changes->size(), 1);
  }

  // The window must not wait for a walk through a large tree when it closes.
  void EndsInTheMiddle() {
    for (int i = 0; i < 500; ++i) QVERIFY(QDir(m_folder->path()).mkpath(QStringLiteral("root/many/%1/a").arg(i)));
    for (int i = 0; i < 5; ++i) {
      TFolderWatcher watcher;
      watcher.Watch(Path("root"));
    }
    m_watcher->Watch(Path("root"));
    QVERIFY(m_changes->wait(Patience));
    m_changes->clear();
    QVERIFY(Write(Path("root/many/499/a/new")));
    QVERIFY(m_changes->wait(Patience));
  }

 private:
  [[nodiscard]] QString Path(const QString &name) const { return m_folder->filePath(name); }

  std::unique_ptr<QTemporaryDir> m_folder;
  std::unique_ptr<TFolderWatcher> m_watcher;
  std::unique_ptr<QSignalSpy> m_changes;
};

QTEST_GUILESS_MAIN(TTestFolderWatcher)
#include "test_folder_watcher.moc"
