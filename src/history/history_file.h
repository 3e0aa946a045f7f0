#pragma once

#include <QString>

#include "store/sqlite_connection.h"
#include "store/store_file.h"

// One connection to the history's file, for THistoryStore.
class THistoryFile final {
 public:
  explicit THistoryFile(QString filePath) : m_filePath(std::move(filePath)) {}

  // Makes the connection usable: opened, of our version, and still the file that the path leads to. A file that is
  // missing is made only when `mayCreate`.
  [[nodiscard]] StoreFile::TState Ensure(bool mayCreate);
  void Close() { m_database.Close(); }

  [[nodiscard]] TSqliteConnection &Database() { return m_database; }
  [[nodiscard]] const StoreFile::TIdentity &Identity() const { return m_identity; }

 private:
  [[nodiscard]] StoreFile::TState Open(bool mayCreate);

  QString m_filePath;
  StoreFile::TIdentity m_identity;
  TSqliteConnection m_database;
};
