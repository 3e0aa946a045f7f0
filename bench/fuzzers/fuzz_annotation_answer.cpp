// Input: what an annotation service answers.

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <QUrl>

#include "annotations/annotation_answer.h"
#include "require.h"

using namespace AnnotationAnswer;

namespace {

void RequireText(const QString &text, qsizetype longest) {
  REQUIRE(text.size() <= longest && text.isValidUtf16() && text.simplified() == text);
  REQUIRE(!text.contains(QChar(0)) && !text.contains(QChar(0x202E)));
}

void RequireWithinLimits(const TAnnotatedWords &words) {
  REQUIRE(words.size() <= MostWords);
  QSet<QString> seen;
  for (const auto &[word, title, links] : words) {
    RequireText(word, LongestWord);
    RequireText(title, LongestTitle);
    REQUIRE(!word.isEmpty() && !(title.isEmpty() && links.isEmpty()) && links.size() <= MostLinks);
    REQUIRE(!seen.contains(word.toCaseFolded()));
    seen.insert(word.toCaseFolded());
    for (const TAnnotationLink &link : links) {
      RequireText(link.title, LongestTitle);
      const QUrl url(link.address);
      REQUIRE(link.address.size() <= LongestAddress && url.isValid() && url.userInfo().isEmpty());
      REQUIRE(url.scheme() == QStringLiteral("http") || url.scheme() == QStringLiteral("https"));
    }
  }
}

QByteArray Written(const TAnnotatedWords &words) {
  QJsonArray all;
  for (const TAnnotatedWord &word : words) {
    QJsonArray links;
    for (const auto &[title, address] : word.links) {
      links.append(QJsonObject{{QStringLiteral("title"), title}, {QStringLiteral("address"), address}});
    }
    all.append(QJsonObject{
        {QStringLiteral("word"), word.word}, {QStringLiteral("title"), word.title}, {QStringLiteral("links"), links}});
  }
  return QJsonDocument(all).toJson(QJsonDocument::Compact);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size) {
  const auto words = Read(Fuzz::Input(data, size));
  if (!words) return 0;
  RequireWithinLimits(*words);
  // What came out is as it would have been written properly.
  const QByteArray written = Written(*words);
  REQUIRE(written.size() > Longest || Read(written) == words);
  return 0;
}
