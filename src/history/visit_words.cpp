#include "history/visit_words.h"

#include <algorithm>
#include <QRegularExpression>
#include <QUrl>

namespace VisitWords {

namespace {

constexpr qsizetype LongestText = 2048;  // characters of an address or a title that are looked at
constexpr qsizetype LongestQuery = 256;
constexpr qsizetype MostParts = 12;

bool IsWrittenWithoutBlanks(char32_t c) {
  switch (QChar::script(c)) {
    case QChar::Script_Han:
    case QChar::Script_Hiragana:
    case QChar::Script_Katakana:
    case QChar::Script_Bopomofo:
    case QChar::Script_Thai:
    case QChar::Script_Lao:
    case QChar::Script_Khmer:
    case QChar::Script_Myanmar:
      return true;
    default:
      return false;
  }
}

QString Readable(const QString &address) {
  QUrl url(address);
  QString text = QUrl::fromPercentEncoding(address.toUtf8());
  const QString ace = url.host(QUrl::FullyEncoded);
  if (ace.contains(QLatin1String("xn--"))) text.replace(ace, QUrl::fromAce(ace.toLatin1(), QUrl::IgnoreIDNWhitelist));
  return text;
}

// Takes a text that has been decomposed, character by character.
class TFolder final {
 public:
  void Take(char32_t c) {
    if (QChar::category(c) == QChar::Mark_NonSpacing) return;
    if (!QChar::isLetterOrNumber(c)) {
      m_inWord = false;
      return;
    }
    const bool alone = IsWrittenWithoutBlanks(c);
    if (!m_inWord || alone) folded += u' ';
    folded += QStringView(QChar::fromUcs4(c));
    m_inWord = !alone;
  }

  QString folded;

 private:
  bool m_inWord = false;
};

QList<uint> Decomposed(const QString &text) {
  // The one letter whose folding is longer than itself, which QString leaves alone.
  const QString spelled = QString(text).replace(u'\u00DF', QLatin1String("ss"));
  return spelled.normalized(QString::NormalizationForm_KD).toCaseFolded().toUcs4();
}

}  // namespace

QString Fold(const QString &text) {
  TFolder folder;
  folder.folded.reserve(text.size() + 1);
  for (const char32_t c : Decomposed(text)) folder.Take(c);
  return folder.folded;
}

QString Of(const QString &address, const QString &title) {
  return Fold(Readable(address.left(LongestText))) + Fold(title.left(LongestText));
}

QStringList Query(const QString &text) {
  static const QRegularExpression blanks(QStringLiteral("\\s+"));
  QStringList query;
  for (const QString &part : text.left(LongestQuery).split(blanks, Qt::SkipEmptyParts)) {
    const QString folded = Fold(part);
    if (!folded.isEmpty() && query.size() < MostParts) query.append(folded);
  }
  return query;
}

bool Match(const QString &words, const QStringList &query) {
  return std::ranges::all_of(query, [&](const QString &part) { return words.contains(part); });
}

QList<TPlace> Places(const QString &text, const QStringList &query) {
  TFolder folder;
  QList<TPlace> origins;  // of each character of the folded text
  const QString looked = text.left(LongestText);
  for (qsizetype at = 0; at < looked.size();) {
    const bool isPair = looked.at(at).isHighSurrogate() && at + 1 < looked.size();
    const TPlace origin{at, isPair ? 2 : 1};
    for (const char32_t c : Decomposed(looked.sliced(at, origin.length))) folder.Take(c);
    // A mark by itself belongs to the letter before it.
    if (!origins.isEmpty() && looked.at(at).isMark()) origins.last().length += origin.length;
    while (origins.size() < folder.folded.size()) origins.append(origin);
    at += origin.length;
  }
  QList<TPlace> found;
  for (const QString &part : query) {
    for (qsizetype at = folder.folded.indexOf(part); at >= 0; at = folder.folded.indexOf(part, at + 1)) {
      // Before the first letter stands the blank that every word begins with.
      const TPlace &first = origins.at(at + 1);
      const TPlace &last = origins.at(at + part.size() - 1);
      found.append({first.start, last.start + last.length - first.start});
    }
  }
  std::ranges::sort(found, {}, &TPlace::start);
  QList<TPlace> places;
  for (const TPlace &place : found) {
    const qsizetype end = place.start + place.length;
    if (places.isEmpty() || place.start > places.last().start + places.last().length) {
      places.append(place);
    } else {
      places.last().length = std::max(places.last().start + places.last().length, end) - places.last().start;
    }
  }
  return places;
}

}  // namespace VisitWords
