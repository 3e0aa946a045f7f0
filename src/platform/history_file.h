#pragma once

#include <QString>

#include "platform/damaged_file.h"
#include "platform/sqlite_connection.h"

// One connection to the history's file, for THistoryStore.
class THistoryFile final {
 public:
  enum class TResult { Ready, Busy, Damaged, Unavailable };

  explicit THistoryFile(QString filePath) : m_filePath(std::move(filePath)) {}

  // Makes the connection usable: opened, of our version, and still the file that the path leads to. A file that is
  // missing is made only when `mayCreate`.
  [[nodiscard]] TResult Ensure(bool mayCreate);
  void Close() { m_database.Close(); }

  [[nodiscard]] TSqliteConnection &Database() { return m_database; }
  [[nodiscard]] const DamagedFile::TIdentity &Identity() const { return m_identity; }
  [[nodiscard]] static TResult ResultOf(int code);

 private:
  [[nodiscard]] TResult Open(bool mayCreate);
  [[nodiscard]] TResult CheckSchema();
  [[nodiscard]] TResult CreateSchema();

  QString m_filePath;
  DamagedFile::TIdentity m_identity;
  TSqliteConnection m_database;
};
