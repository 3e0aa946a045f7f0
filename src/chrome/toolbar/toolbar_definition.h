#pragma once

#include <QByteArray>
#include <QList>

class TIniFile;

// One thing on the tool bar: a button by its index in the table of kinds, or a separator.
struct TToolbarEntry {
  static constexpr int Separator = -1;

  int index = Separator;
  bool visible = true;

  bool operator==(const TToolbarEntry &) const = default;
};

// From left to right, hidden buttons among them.
using TToolbarEntries = QList<TToolbarEntry>;

// What stands on the tool bar and in which order, as the file "tbmain.dat" has it: an INI file whose section "Toolbar"
// has a line for each entry, from left to right. A button's key is its index, a separator's "Sep" and its place, from
// 0; the value is "1" for what shows and "0" for what does not.
namespace ToolbarDefinition {

inline constexpr const char *FileName = "tbmain.dat";
inline constexpr int KindCount = 22;
// No tool bar has more; of a longer file the end counts.
inline constexpr int MostEntries = 500;

[[nodiscard]] TToolbarEntries Default();
// Whatever the file holds. It is read from its end, as the tool bar is built from its right end, and a key that is no
// number ends it: what stands before that line is not read. Separators come back visible, whatever the file says. A
// file without a key "21", from before that button existed, gets the button at the right end. An index that no kind has
// stays: the button of a later version.
[[nodiscard]] TToolbarEntries FromFile(const TIniFile &file);
[[nodiscard]] QByteArray ToBytes(const TToolbarEntries &entries);

}  // namespace ToolbarDefinition
