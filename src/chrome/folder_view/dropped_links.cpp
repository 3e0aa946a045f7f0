#include "chrome/folder_view/dropped_links.h"

#include <QHash>
#include <QMimeData>
#include <QRegularExpression>
#include <QSet>
#include <QTextDocumentFragment>
#include <QUrl>

#include "browser/strip/link_mime.h"

namespace {

const QString TitledFormat = QStringLiteral("text/x-moz-url");
// More is a document, and not what somebody has dragged for its links.
constexpr qsizetype LongestHtml = 256 * 1024;

QString Encoded(const QString &address) {
  return QUrl(address.trimmed()).toString(QUrl::FullyEncoded);
}

QStringList TitledLines(const QMimeData &data) {
  const QByteArray bytes = data.data(TitledFormat);
  QString text(bytes.size() / 2, Qt::Uninitialized);
  memcpy(text.data(), bytes.constData(), size_t(text.size()) * 2);
  return text.remove(QChar(0)).remove(u'\r').split(u'\n');
}

// By their addresses. The first that is told of one counts.
QHash<QString, QString> TitlesIn(const QMimeData &data, const QStringList &lines) {
  QHash<QString, QString> titles;
  const auto add = [&titles](const QString &address, const QString &title) {
    if (!title.trimmed().isEmpty() && !titles.contains(address)) titles.insert(address, title.simplified());
  };
  for (qsizetype i = 0; i + 1 < lines.size(); i += 2) add(Encoded(lines.at(i)), lines.at(i + 1));
  if (!data.hasHtml()) return titles;
  static const QRegularExpression link(
      QStringLiteral("<a\\b[^>]*\\bhref\\s*=\\s*[\"']([^\"']*)[\"'][^>]*>(.*?)</a>"),
      QRegularExpression::CaseInsensitiveOption | QRegularExpression::DotMatchesEverythingOption);
  const QString html = data.html().left(LongestHtml);
  for (auto matches = link.globalMatch(html); matches.hasNext();) {
    const QRegularExpressionMatch match = matches.next();
    add(Encoded(QTextDocumentFragment::fromHtml(match.captured(1)).toPlainText()),
        QTextDocumentFragment::fromHtml(match.captured(2)).toPlainText());
  }
  return titles;
}

}  // namespace

QList<TDroppedLink> DroppedLinks(const QMimeData &data) {
  const QStringList lines = TitledLines(data);
  const QHash<QString, QString> titles = TitlesIn(data, lines);
  QList<TDroppedLink> links;
  QSet<QString> taken;
  const auto add = [&](const QString &address) {
    if (taken.contains(address)) return;
    taken.insert(address);
    links.append({address, titles.value(address)});
  };
  for (const QString &address : LinksIn(data)) add(address);
  // Some tell only this.
  QMimeData titled;
  QList<QUrl> urls;
  for (qsizetype i = 0; i < lines.size(); i += 2) urls.append(QUrl(lines.at(i).trimmed()));
  titled.setUrls(urls);
  for (const QString &address : LinksIn(titled)) add(address);
  return links;
}
