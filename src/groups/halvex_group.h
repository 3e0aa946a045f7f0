#pragma once

#include <QString>
#include <QStringList>

#include "config/named_address.h"

// True when the path's extension is ".hgp" in any spelling: this decides whether a path is a page group.
[[nodiscard]] bool IsHalvexGroupFile(const QString &path);

// A page group: the pages of one group file, which is an INI file (see TIniFile) with the section "HalvexGroup". It has
// one line per page, "name=address", in the order of the pages. The name is the tab's own name without "=", or "blank"
// and a number for a tab that has none; a "*" before the address means that the tab is to be locked. Other sections are
// kept as they are.
//
// Names that tabs have are not made unique: when the file is written, a second line of the same name replaces the
// address of the first in its place. That two tabs of one name leave only one page is how the format is.
class THalvexGroup final {
 public:
  static constexpr const char *Section = "HalvexGroup";
  static constexpr const char *Extension = ".hgp";

  THalvexGroup() = default;
  // Reads the file. One that is not there is no error: the list stays empty and FileName too.
  explicit THalvexGroup(const QString &fileName);

  [[nodiscard]] const QString &FileName() const { return m_fileName; }
  void SetFileName(const QString &fileName) { m_fileName = fileName; }
  // Why an existing file could not be read; empty when it could.
  [[nodiscard]] const QString &ReadError() const { return m_readError; }

  [[nodiscard]] int Count() const { return int(m_lines.size()); }
  // The text before the line's first "=", and the text after it with its "*"; a line without "=" is a name without an
  // address.
  [[nodiscard]] TNamedAddress At(int line) const;

  // Appends a page; an empty name becomes "blank" and the new number of lines, or the next one that is free.
  void AddEntry(const QString &name, const QString &address, bool locked);
  // Appends a line as it stands.
  void AddLine(const QString &line) { m_lines.append(line); }
  void Clear() { m_lines.clear(); }

  // Writes the lines to FileName, which must not be empty, in place of those that the file holds: through a temporary
  // file, so that a failure leaves the old file whole. A file that cannot be read is not written over. A line without
  // "=" writes the name and value of the line before it once more, which is meant. On failure `error` gets the reason.
  [[nodiscard]] bool Save(QString *error) const;

 private:
  [[nodiscard]] bool Names(const QString &key) const;  // there is a line of that name, in whatever case

  QString m_fileName;
  QString m_readError;
  QStringList m_lines;
};
