#include "chrome/toolbar/toolbar_definition.h"

#include <algorithm>
#include <iterator>

#include "store/ini_file.h"

namespace {

constexpr const char *Section = "Toolbar";
constexpr QLatin1String SeparatorKey("Sep");
constexpr QLatin1String SecurityKey("21");
constexpr int Security = 21;

constexpr int SeparatorFollows[] = {1, 3, 7, 9, 12};
constexpr int HiddenAtFirst[] = {1, 17, 18, 19, 20};

bool Contains(const auto &set, int index) {
  return std::ranges::find(set, index) != std::end(set);
}

}  // namespace

TToolbarEntries ToolbarDefinition::Default() {
  TToolbarEntries entries;
  for (int index = 0; index < KindCount; ++index) {
    entries.append({index, !Contains(HiddenAtFirst, index)});
    if (Contains(SeparatorFollows, index)) entries.append(TToolbarEntry());
  }
  return entries;
}

TToolbarEntries ToolbarDefinition::FromFile(const TIniFile &file) {
  const auto lines = file.Pairs(QString::fromLatin1(Section));
  TToolbarEntries entries;  // from right to left
  const auto isSecurity = [](const auto &line) { return line.first == SecurityKey; };
  if (std::ranges::none_of(lines, isSecurity)) entries.append({Security, true});
  for (auto line = lines.rbegin(); line != lines.rend() && entries.size() < MostEntries; ++line) {
    if (line->first.startsWith(SeparatorKey)) {
      entries.append(TToolbarEntry());
      continue;
    }
    bool isNumber = false;
    const int index = line->first.toInt(&isNumber);
    if (!isNumber) break;
    entries.append({index, line->second != QLatin1String("0")});
  }
  std::reverse(entries.begin(), entries.end());
  return entries;
}

QByteArray ToolbarDefinition::ToBytes(const TToolbarEntries &entries) {
  QByteArray bytes = QByteArray("[") + Section + "]\n";
  for (qsizetype place = 0; place < entries.size(); ++place) {
    const TToolbarEntry &entry = entries.at(place);
    bytes +=
        entry.index == TToolbarEntry::Separator ? "Sep" + QByteArray::number(place) : QByteArray::number(entry.index);
    bytes += entry.visible ? "=1\n" : "=0\n";
  }
  return bytes;
}
