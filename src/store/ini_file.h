#pragma once

#include <compare>
#include <optional>
#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>
#include <utility>

// An INI text file in memory: language files, page groups and the tool-bar definition are such files.
//
// Text is UTF-8 (a byte-order mark is accepted); a line that is not valid UTF-8 is read as Latin-1, so that any bytes
// load. Sections and keys compare without regard to case and keep their order and spelling. A line that is neither a
// section, a comment (";") nor a "name=value" pair, and whatever stands before the first section, belongs to nobody and
// is kept. Lines that were not changed are written back byte for byte, with their line ends. Blanks around names and
// values are not part of them; there are no quotes and no escapes. A repeated section continues the first; of a
// repeated key the first counts.
class TIniFile final {
 public:
  [[nodiscard]] static TIniFile FromBytes(const QByteArray &bytes);
  [[nodiscard]] QByteArray ToBytes() const;

  // Reads `path`. On failure the object is empty and `error`, when given, holds the system's reason. What is no regular
  // file (a folder, a pipe) or is beyond any use (64 MiB) is refused.
  bool Load(const QString &path, QString *error = nullptr);
  // Writes to a temporary file beside `path` and renames it, so that a crash leaves the old file or the new one, whole.
  // A link stays one: the file that it leads to is replaced. The folder must exist.
  bool Save(const QString &path, QString *error = nullptr) const;

  [[nodiscard]] bool HasSection(const QString &section) const;
  [[nodiscard]] bool HasKey(const QString &section, const QString &key) const;
  [[nodiscard]] QStringList Sections() const;
  // All pairs of the section in file order, repeated keys included.
  [[nodiscard]] QList<std::pair<QString, QString>> Pairs(const QString &section) const;
  [[nodiscard]] QString Value(const QString &section, const QString &key, const QString &fallback = {}) const;

  // A key that is there keeps its place and spelling, a new one goes to the end of its section, a new section to the
  // end of the file; other sections are not touched. So that what was set is also what is read back, line breaks become
  // blanks everywhere, a key loses its "=" and a ";" in front that would make it a comment, a section its "]" and "=".
  void SetValue(const QString &section, const QString &key, const QString &value);
  // Removes every pair of that key.
  void RemoveKey(const QString &section, const QString &key);
  // Removes the section with all that stands in it, comments included.
  void RemoveSection(const QString &section);

 private:
  enum class TLineEnd : char { None, Lf, CrLf };
  struct TLine {
    QByteArray bytes;  // Without the line end; of a loaded file this only points into m_source.
    TLineEnd end = TLineEnd::None;
    bool isRemoved = false;
  };
  // A header line (none for what precedes the first section) and the lines up to the next one.
  struct TBlock {
    QList<TLine> lines;
  };
  struct TPlace {
    int block = 0;
    int line = 0;
    auto operator<=>(const TPlace &) const = default;
  };
  using TIndexEntry = std::pair<size_t, TPlace>;  // The hash of a folded key and its line.
  // Lines never move but for blank ones, so that the places of the index stay valid.
  struct TSection {
    QString name;
    QList<int> blocks;                 // Empty once the section was removed.
    mutable QList<TIndexEntry> index;  // Sorted; made at the first look-up, several times faster than a hash table.
    QMultiHash<size_t, TPlace> added;  // The keys that were set since.
    mutable bool isIndexed = false;
  };

  [[nodiscard]] const TSection *FindSection(const QString &section) const;
  TSection &MakeSection(const QString &section);
  // The line of `key`, as it stands or as SetValue would write it.
  [[nodiscard]] std::optional<TPlace> FindKey(const TSection &section, const QString &key) const;
  [[nodiscard]] std::optional<TPlace> FindFolded(const TSection &section, const QByteArray &folded) const;
  void Index(const TSection &section) const;
  void AppendLine(TBlock &block, qsizetype place, const QByteArray &bytes);

  QByteArray m_source;
  bool m_hasByteOrderMark = false;
  TLineEnd m_lineEnd = TLineEnd::Lf;
  QList<TBlock> m_blocks;
  QList<TSection> m_sections;
  QHash<QString, qsizetype> m_sectionIndex;
};
