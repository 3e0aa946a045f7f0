#pragma once

#include <signal.h>
#include <sqlite3.h>
#include <sys/resource.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QtTest>

// A store's file as another process has it locked for as long as this object lives: others can read it but not write,
// or not even read. A missing file is made.
class TStoreLock final {
 public:
  enum class TKind { Unwritable, Unreadable };

  explicit TStoreLock(const QString &path, TKind kind = TKind::Unwritable) {
    QDir().mkpath(QFileInfo(path).path());
    if (kind == TKind::Unwritable) {
      Lock(path, "BEGIN IMMEDIATE");
      return;
    }
    // With its log, the file can be read whoever writes. So its place is taken by a copy that has none.
    Lock(path, "PRAGMA wal_checkpoint(TRUNCATE)");
    sqlite3_close(m_database);
    const QString copy = path + QStringLiteral(".copy");
    QFile::copy(path, copy);
    Lock(copy, "PRAGMA journal_mode = DELETE; BEGIN EXCLUSIVE");
    for (const char *log : {"-wal", "-shm"}) QFile::remove(path + QLatin1String(log));
    if (::rename(QFile::encodeName(copy).constData(), QFile::encodeName(path).constData()) != 0) {
      QTest::qFail("the file stays", __FILE__, __LINE__);
    }
  }
  ~TStoreLock() {
    sqlite3_exec(m_database, "ROLLBACK", nullptr, nullptr, nullptr);
    sqlite3_close(m_database);
  }
  TStoreLock(const TStoreLock &) = delete;
  TStoreLock &operator=(const TStoreLock &) = delete;

 private:
  void Lock(const QString &path, const char *statement) {
    if (sqlite3_open(QFile::encodeName(path).constData(), &m_database) != SQLITE_OK ||
        sqlite3_exec(m_database, statement, nullptr, nullptr, nullptr) != SQLITE_OK) {
      QTest::qFail("the lock was refused", __FILE__, __LINE__);
    }
  }

  sqlite3 *m_database = nullptr;
};

// A store's folder is not there, and none can be made, for as long as this object lives.
class TMissingFolder final {
 public:
  explicit TMissingFolder(const QString &path) : m_path(path) {
    QFile inTheWay(m_path);
    if (!QDir().rename(m_path, Away()) || !inTheWay.open(QIODevice::WriteOnly)) {
      QTest::qFail("the folder stays", __FILE__, __LINE__);
    }
  }
  ~TMissingFolder() {
    QFile::remove(m_path);
    QDir().rename(Away(), m_path);
  }
  TMissingFolder(const TMissingFolder &) = delete;
  TMissingFolder &operator=(const TMissingFolder &) = delete;

 private:
  [[nodiscard]] QString Away() const { return m_path + QStringLiteral(".away"); }

  const QString m_path;
};

// No file grows beyond so many bytes meanwhile, as on a full disk.
class TSmallFiles final {
 public:
  explicit TSmallFiles(rlim_t most) {
    ::signal(SIGXFSZ, SIG_IGN);
    ::getrlimit(RLIMIT_FSIZE, &m_before);
    const rlimit limit{most, m_before.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~TSmallFiles() { ::setrlimit(RLIMIT_FSIZE, &m_before); }

 private:
  rlimit m_before{};
};
