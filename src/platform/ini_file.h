#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <utility>

// An INI text file in memory: language files, page groups and the tool-bar definition are such files.
//
// Text is UTF-8 (a byte-order mark is accepted); bytes that are not valid UTF-8 are read as Latin-1, so that any bytes
// load. Sections and keys compare without regard to case and keep their order and spelling. Lines that are neither a
// section, a comment (";") nor a "name=value" pair are kept as they stand when the file is written again. A repeated
// section continues the first; of a repeated key the first counts.
class TIniFile final {
 public:
  [[nodiscard]] static TIniFile FromBytes(const QByteArray &bytes);
  [[nodiscard]] QByteArray ToBytes() const;

  // Reads `path`. On failure the object is empty and `error`, when given, holds the system's reason.
  bool Load(const QString &path, QString *error = nullptr);
  // Writes to a temporary file beside `path` and renames it, so that a crash leaves the old file or the new one, whole.
  bool Save(const QString &path, QString *error = nullptr) const;

  [[nodiscard]] bool HasSection(const QString &section) const;
  [[nodiscard]] bool HasKey(const QString &section, const QString &key) const;
  [[nodiscard]] QStringList Sections() const;
  [[nodiscard]] QList<std::pair<QString, QString>> Pairs(const QString &section) const;
  [[nodiscard]] QString Value(const QString &section, const QString &key, const QString &fallback = {}) const;

  // A key that is there keeps its place, a new one goes to the end of its section; other sections are not touched.
  void SetValue(const QString &section, const QString &key, const QString &value);
  void RemoveKey(const QString &section, const QString &key);
  void RemoveSection(const QString &section);
