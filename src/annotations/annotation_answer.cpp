#include "annotations/annotation_answer.h"

#include <algorithm>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <QUrl>

#include "platform/web_address.h"
#include "ui/shown_text.h"

namespace {

using namespace AnnotationAnswer;

// Half a pair of surrogates, which no text has.
bool IsWhole(const QString &text) {
  return text.isValidUtf16();
}

QString Title(const QJsonValue &value) {
  QString title = OneLine(value.toString()).simplified();
  if (!IsWhole(title)) return {};
  if (title.size() <= LongestTitle) return title;
  title.truncate(title.at(LongestTitle - 2).isHighSurrogate() ? LongestTitle - 2 : LongestTitle - 1);
  return title.trimmed() + QChar(0x2026);
}

// Empty where it is none.
QString Word(const QJsonValue &value) {
  const QString given = value.toString();
  // The same word is written in more than one way, and can grow by being put right.
  if (given.size() > LongestWord || !IsWhole(given)) return {};
  const QString word = OneLine(given).normalized(QString::NormalizationForm_C).simplified();
  const bool isWord = std::ranges::any_of(word.toUcs4(), [](char32_t c) { return QChar::isLetterOrNumber(c); });
  return isWord && word.size() <= LongestWord ? word : QString();
}

QString Address(const QJsonValue &value) {
  const QString given = value.toString();
  if (given.size() > LongestAddress || !IsWhole(given)) return {};
  const QUrl url(given, QUrl::StrictMode);
  if (!WebAddress::IsPlain(url)) return {};
  const QString address = url.toString(QUrl::FullyEncoded);
  return address.size() <= LongestAddress ? address : QString();
}

QList<TAnnotationLink> Links(const QJsonValue &value) {
  QList<TAnnotationLink> links;
  const QJsonArray all = value.toArray();
  for (const QJsonValue one : all) {
    if (links.size() == MostLinks) break;
    const QJsonObject object = one.toObject();
    const TAnnotationLink link{Title(object.value(QLatin1String("title"))),
                               Address(object.value(QLatin1String("address")))};
    if (!link.address.isEmpty() && !links.contains(link)) links.append(link);
  }
  return links;
}

}  // namespace

std::optional<TAnnotatedWords> AnnotationAnswer::Read(const QByteArray &answer) {
  if (answer.size() > Longest) return std::nullopt;
  const QJsonDocument document = QJsonDocument::fromJson(answer);
  if (!document.isArray()) return std::nullopt;
  TAnnotatedWords words;
  QSet<QString> seen;
  const QJsonArray all = document.array();
  for (const QJsonValue one : all) {
    if (words.size() == MostWords) break;
    const QJsonObject object = one.toObject();
    TAnnotatedWord word{Word(object.value(QLatin1String("word"))), Title(object.value(QLatin1String("title"))),
                        Links(object.value(QLatin1String("links")))};
    if (word.word.isEmpty() || (word.title.isEmpty() && word.links.isEmpty())) continue;
    const QString folded = word.word.toCaseFolded();
    if (seen.contains(folded)) continue;
    seen.insert(folded);
    words.append(word);
  }
  return words;
}
