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

}  // namespace

QString Fold(const QString &text) {
  // The one letter whose folding is longer than itself, which QString leaves alone.
  const QString spelled = QString(text).replace(u'\u00DF', QLatin1String("ss"));
  const QList<uint> characters = spelled.normalized(QString::NormalizationForm_KD).toCaseFolded().toUcs4();
  QString folded;
  folded.reserve(characters.size() + 1);
  bool inWord = false;
  for (const char32_t c : characters) {
    if (QChar::category(c) == QChar::Mark_NonSpacing) continue;
    if (!QChar::isLetterOrNumber(c)) {
      inWord = false;
      continue;
    }
    const bool alone = IsWrittenWithoutBlanks(c);
    if (!inWord || alone) folded += u' ';
    folded += QStringView(QChar::fromUcs4(c));
    inWord = !alone;
  }
  return folded;
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

}  // namespace VisitWords
