#include "store/sqlite_connection.h"

#include <sqlite3.h>
#include <QFile>

TSqliteStatement::TSqliteStatement(TSqliteConnection &connection, sqlite3_stmt *statement, int code)
    : m_connection(connection), m_statement(statement), m_code(code) {}

TSqliteStatement::~TSqliteStatement() {
  if (m_statement == nullptr) return;
  sqlite3_reset(m_statement);
  sqlite3_clear_bindings(m_statement);
}

TSqliteStatement &TSqliteStatement::Bind(const QString &text) {
  ++m_bound;
  if (m_statement == nullptr) return *this;
  const QByteArray bytes = text.toUtf8();
  const int code = sqlite3_bind_text64(m_statement, m_bound, bytes.constData(), sqlite3_uint64(bytes.size()),
                                       SQLITE_TRANSIENT, SQLITE_UTF8);
  if (code != SQLITE_OK) m_code = code;
  return *this;
}

TSqliteStatement &TSqliteStatement::Bind(qint64 number) {
  ++m_bound;
  if (m_statement == nullptr) return *this;
  const int code = sqlite3_bind_int64(m_statement, m_bound, number);
  if (code != SQLITE_OK) m_code = code;
  return *this;
}

bool TSqliteStatement::Step() {
  // A parameter that could not be bound (a text beyond SQLite's limit) must not be taken for an empty one.
  if (m_statement == nullptr || (m_code != SQLITE_OK && m_code != SQLITE_ROW)) return false;
  m_code = m_connection.Noted(sqlite3_step(m_statement));
  return m_code == SQLITE_ROW;
}

bool TSqliteStatement::Run() {
  while (Step()) {
  }
  return m_code == SQLITE_DONE;
}

QString TSqliteStatement::Text(int column) const {
  const auto *bytes = reinterpret_cast<const char *>(sqlite3_column_text(m_statement, column));
  return QString::fromUtf8(bytes, sqlite3_column_bytes(m_statement, column));
}

qint64 TSqliteStatement::Integer(int column) const {
  return sqlite3_column_int64(m_statement, column);
}

bool TSqliteStatement::IsInteger(int column) const {
  return sqlite3_column_type(m_statement, column) == SQLITE_INTEGER;
}

TSqliteConnection::~TSqliteConnection() {
  Close();
}

int TSqliteConnection::Open(const QString &filePath, TMode mode) {
  Close();
  m_damageSeen = false;
  QByteArray address = ":memory:";
  int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
  if (mode != TMode::Memory) {
    // Made here first because SQLite would let others read it; an existing file is left alone.
    if (mode == TMode::ReadWrite) {
      QFile(filePath).open(QIODevice::WriteOnly | QIODevice::NewOnly, QFile::ReadOwner | QFile::WriteOwner);
    }
    address = "file:" + QFile::encodeName(filePath).toPercentEncoding("/");
    if (mode == TMode::Immutable) address += "?immutable=1";
    flags = (mode == TMode::ReadWrite ? SQLITE_OPEN_READWRITE : SQLITE_OPEN_READONLY) | SQLITE_OPEN_URI;
  }
  const int code = sqlite3_open_v2(address.constData(), &m_database, flags, nullptr);
  if (code != SQLITE_OK) Close();
  return code;
}

void TSqliteConnection::Close() {
  for (sqlite3_stmt *statement : std::as_const(m_statements)) sqlite3_finalize(statement);
  m_statements.clear();
  sqlite3_close_v2(m_database);
  m_database = nullptr;
}

void TSqliteConnection::SetBusyTimeout(int milliseconds) {
  sqlite3_busy_timeout(m_database, milliseconds);
}

int TSqliteConnection::Execute(const char *sql) {
  if (m_database == nullptr) return SQLITE_MISUSE;
  return Noted(sqlite3_exec(m_database, sql, nullptr, nullptr, nullptr));
}

TSqliteStatement TSqliteConnection::Use(const char *sql) {
  if (m_database == nullptr) return {*this, nullptr, SQLITE_MISUSE};
  sqlite3_stmt *&statement = m_statements[sql];
  int code = SQLITE_OK;
  if (statement == nullptr) {
    code = Noted(sqlite3_prepare_v3(m_database, sql, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr));
  }
  return {*this, statement, code};
}

bool TSqliteConnection::InTransaction() const {
  return m_database != nullptr && sqlite3_get_autocommit(m_database) == 0;
}

qint64 TSqliteConnection::Changes() const {
  return m_database != nullptr ? sqlite3_changes(m_database) : 0;
}

int TSqliteConnection::Code() const {
  return m_database != nullptr ? sqlite3_errcode(m_database) : SQLITE_MISUSE;
}

int TSqliteConnection::Noted(int code) {
  const int primary = code & 0xFF;
  if (primary == SQLITE_CORRUPT || primary == SQLITE_NOTADB) m_damageSeen = true;
  return code;
}
