#include "ui/shown_address.h"

#include <algorithm>
#include <array>
#include <QSet>
#include <QUrl>

namespace {

constexpr QLatin1String AcePrefix("xn--");

// Scripts that are written together, after the "highly restrictive" level of UTS 39: with Latin these, else one alone.
constexpr std::array Together{
    std::to_array({QChar::Script_Latin, QChar::Script_Han, QChar::Script_Hiragana, QChar::Script_Katakana}),
    std::to_array({QChar::Script_Latin, QChar::Script_Han, QChar::Script_Bopomofo, QChar::Script_Unknown}),
    std::to_array({QChar::Script_Latin, QChar::Script_Han, QChar::Script_Hangul, QChar::Script_Unknown}),
};

// Small letters of Cyrillic, Greek and Armenian that look like Latin ones in common typefaces.
constexpr QStringView LooksLatin = u"асԁеһіјӏоԛрѕԝхуѵүғҝкгпмтнοανυρκιγωϲϳաօսցհոզյ";

bool AreWrittenTogether(const QSet<QChar::Script> &scripts) {
  if (scripts.size() <= 1) return true;
  return std::ranges::any_of(Together, [&](const auto &group) {
    return std::ranges::all_of(scripts,
                               [&](QChar::Script script) { return std::ranges::find(group, script) != group.end(); });
  });
}

// What cannot be seen, or joins with its neighbour, has no place in a name that is read.
bool IsPlain(char32_t c) {
  switch (QChar::category(c)) {
    case QChar::Letter_Lowercase:
    case QChar::Letter_Other:
    case QChar::Letter_Modifier:
    case QChar::Mark_NonSpacing:
    case QChar::Mark_SpacingCombining:
    case QChar::Number_DecimalDigit:
      return true;
    default:
      return c == U'-' || c == U'\u00B7' || c == U'\u30FB';
  }
}

bool IsLatin(char32_t c) {
  return QChar::script(c) == QChar::Script_Latin;
}

// The Latin letters of living languages. Others, and marks that are set upon Latin letters one by one, make names that
// pass for plain ones.
bool IsCommonLatin(char32_t c) {
  constexpr QStringView LooksPlain = u"\u0131\u0138\u0149\u017F";
  constexpr QStringView Further = u"\u01A1\u01B0\u0219\u021B\u0259";
  if (c >= U'a' && c <= U'z') return true;
  if (c > 0xFFFF) return false;
  const QChar character(static_cast<char16_t>(c));
  if (c >= 0xDF && c <= 0x17F) return !LooksPlain.contains(character);
  return (c >= 0x1CD && c <= 0x1DC) || (c >= 0x1E00 && c <= 0x1EFF) || Further.contains(character);
}

bool IsJapanese(char32_t c) {
  const QChar::Script script = QChar::script(c);
  return script == QChar::Script_Han || script == QChar::Script_Hiragana || script == QChar::Script_Katakana ||
         c == U'\u30FC';
}

// Odd Latin letters, and marks upon Latin letters, have no home in a name. Some other characters pass for a dot, a
// slash or a dash; they are at home only among the letters that they belong to.
bool IsAtHome(const QList<uint> &characters, qsizetype place) {
  constexpr QStringView LooksLikeSign = u"\u30FB\u30FCノソンへ一丶丿〻";
  const char32_t c = characters[place];
  if (IsLatin(c) && !IsCommonLatin(c)) return false;
  if (QChar::isMark(c) && place > 0 && IsLatin(characters[place - 1])) return false;
  const auto beside = [&](qsizetype step, auto fits) {
    const qsizetype other = place + step;
    return other < 0 || other >= characters.size() || fits(char32_t(characters[other]));
  };
  if (c == U'\u00B7') {
    const auto isL = [](char32_t other) { return other == U'l'; };
    return place > 0 && place + 1 < characters.size() && beside(-1, isL) && beside(1, isL);
  }
  if (c > 0xFFFF || !LooksLikeSign.contains(QChar(char16_t(c)))) return true;
  return beside(-1, IsJapanese) && beside(1, IsJapanese);
}

}  // namespace

QString ShownHost(const QString &host) {
  QStringList labels = host.split(u'.');
  for (QString &label : labels) {
    if (!label.startsWith(AcePrefix)) continue;
    const QString own = QUrl::fromAce(label.toLatin1(), QUrl::IgnoreIDNWhitelist);
    if (IsHonestLabel(own)) label = own;
  }
  return labels.join(u'.');
}

bool IsHonestLabel(const QString &label) {
  QSet<QChar::Script> scripts;
  bool hasOwnShape = false;
  const QList<uint> characters = label.toUcs4();
  for (qsizetype place = 0; place < characters.size(); ++place) {
    const char32_t c = characters[place];
    if (!IsPlain(c) || !IsAtHome(characters, place)) return false;
    const QChar::Script script = QChar::script(c);
    if (script != QChar::Script_Common && script != QChar::Script_Inherited) scripts.insert(script);
    if (QChar::isLetter(c) && (c > 0xFFFF || !LooksLatin.contains(QChar(char16_t(c))))) hasOwnShape = true;
  }
  return hasOwnShape && AreWrittenTogether(scripts);
}

QString ShownAddress(const QString &address) {
  if (address == QLatin1String("about:blank")) return {};
  if (!address.contains(AcePrefix, Qt::CaseInsensitive)) return address;
  const QUrl url(address);
  const QString ace = url.host(QUrl::FullyEncoded);
  // The host is replaced in the text, so that nothing else of the address changes its spelling.
  const qsizetype start = address.indexOf(QLatin1String("://")) + 3;
  const qsizetype place = ace.isEmpty() ? -1 : address.indexOf(ace, start);
  if (place < 0) return address;
  QString shown = address;
  shown.replace(place, ace.size(), ShownHost(ace));
  return QUrl(shown) == url ? shown : address;
}
