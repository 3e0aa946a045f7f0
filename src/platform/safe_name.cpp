#include "platform/safe_name.h"

#include <algorithm>
#include <array>
#include <QList>

namespace {

constexpr std::array ReservedNames{"con",  "prn",  "aux",  "nul",  "com1", "com2", "com3", "com4",
                                   "com5", "com6", "com7", "com8", "com9", "lpt1", "lpt2", "lpt3",
                                   "lpt4", "lpt5", "lpt6", "lpt7", "lpt8", "lpt9"};

bool IsUnsafe(char32_t character) {
  if (character == QChar::ReplacementCharacter) return true;  // what halves of surrogate pairs turn into
  switch (QChar::category(character)) {
    case QChar::Other_Control:
    case QChar::Other_Surrogate:
    case QChar::Other_NotAssigned:
    case QChar::Other_PrivateUse:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
      return true;
    case QChar::Other_Format:
      // Direction marks and overrides can make "exe" read as part of another name. Joiners stay, scripts need them.
      return character != 0x200C && character != 0x200D;
    default:
      return false;
  }
}

QString WithoutUnsafeCharacters(const QString &name) {
  static const QString Reserved = QStringLiteral("<>:\"|?*");
  QString kept;
  for (const char32_t character : name.toUcs4()) {
    if (IsUnsafe(character)) continue;
    kept += Reserved.contains(QChar(char16_t(character))) && character < 0x80 ? QString('_')
                                                                              : QString::fromUcs4(&character, 1);
  }
  return kept;
}

QString WithoutEdges(const QString &name) {
  const auto isEdge = [](QChar character) { return character == '.' || character.isSpace(); };
  qsizetype first = 0;
  qsizetype last = name.size();
  while (first < last && isEdge(name.at(first))) ++first;
  while (last > first && isEdge(name.at(last - 1))) --last;
  return name.mid(first, last - first);
}

}  // namespace

QString SafeName::Cleaned(const QString &text) {
  QString name = WithoutEdges(WithoutUnsafeCharacters(text));
  const QString stem = name.section('.', 0, 0).trimmed().toLower();
  if (std::any_of(ReservedNames.begin(), ReservedNames.end(),
                  [&stem](const char *reserved) { return stem == QLatin1String(reserved); })) {
    name.prepend('_');
  }
  return name;
}

QString SafeName::Shortened(const QString &text, qsizetype bytes) {
  if (text.size() * 3 <= bytes) return text;
  qsizetype end = 0;
  while (end < text.size()) {
    const char16_t unit = text.at(end).unicode();
    const bool isPair = QChar::isHighSurrogate(unit) && end + 1 < text.size() && text.at(end + 1).isLowSurrogate();
    bytes -= unit < 0x80 ? 1 : unit < 0x800 ? 2 : isPair ? 4 : 3;
    if (bytes < 0) break;
    end += isPair ? 2 : 1;
  }
  return text.left(end);
}
