#pragma once

#include <QHash>
#include <QString>

struct sqlite3;
struct sqlite3_stmt;

class TSqliteConnection;

// One use of a prepared statement: parameters are bound in their order, then it is stepped. It is reset, ready for its
// next use, when the object goes away.
class TSqliteStatement final {
 public:
  TSqliteStatement(TSqliteConnection &connection, sqlite3_stmt *statement, int code);
  ~TSqliteStatement();
  TSqliteStatement(const TSqliteStatement &) = delete;
  TSqliteStatement &operator=(const TSqliteStatement &) = delete;

  TSqliteStatement &Bind(const QString &text);
  TSqliteStatement &Bind(qint64 number);
  // Goes to the next row; false when there is none or on an error (see Code).
  bool Step();
  // Runs a statement that gives no rows; true when it succeeded.
  bool Run();
  // SQLite's last result code for this use.
  [[nodiscard]] int Code() const { return m_code; }

  [[nodiscard]] QString Text(int column) const;
  [[nodiscard]] qint64 Integer(int column) const;
  [[nodiscard]] bool IsInteger(int column) const;

 private:
  TSqliteConnection &m_connection;
  sqlite3_stmt *m_statement;
  int m_code;
  int m_bound = 0;
};

// A connection to one SQLite file, with its prepared statements. For one thread.
class TSqliteConnection final {
 public:
  // Immutable reads a file whose folder takes no lock and shared-memory files; changes by others are not noticed.
  enum class TMode { ReadWrite, ReadOnly, Immutable, Memory };

  TSqliteConnection() = default;
  ~TSqliteConnection();
  TSqliteConnection(const TSqliteConnection &) = delete;
  TSqliteConnection &operator=(const TSqliteConnection &) = delete;

  // Closes what was open, then opens `filePath` (made, private to the user, in ReadWrite mode when it is missing).
  // Returns SQLite's result code; a file that is no database only shows at the first use.
  int Open(const QString &filePath, TMode mode);
  void Close();
  [[nodiscard]] bool IsOpen() const { return m_database != nullptr; }
  void SetBusyTimeout(int milliseconds);

  // Runs statements that give no rows; returns SQLite's result code.
  int Execute(const char *sql);
  // `sql` must be a literal: the statement is prepared once and kept. One use at a time.
  [[nodiscard]] TSqliteStatement Use(const char *sql);
  [[nodiscard]] bool InTransaction() const;
  // Rows that the last INSERT, UPDATE or DELETE itself has changed.
  [[nodiscard]] qint64 Changes() const;
  // SQLite's result code of the last call.
  [[nodiscard]] int Code() const;

  // True once any call found the file damaged or not a database.
  [[nodiscard]] bool DamageSeen() const { return m_damageSeen; }
  int Noted(int code);

 private:
  sqlite3 *m_database = nullptr;
  QHash<const char *, sqlite3_stmt *> m_statements;
  bool m_damageSeen = false;
};
