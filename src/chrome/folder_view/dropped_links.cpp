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
constexpr qsizetype MostLinks = 1000;

QString Encoded(const QString &address) {
  return QUrl(address.trimmed()).toString(QUrl::FullyEncoded);
}

QStringList TitledLines(const QMimeData &data) {
  const QByteArray bytes = data.data(TitledFormat);
  QString text(bytes.size() / 2, Qt::Uninitialized);
  memcpy(text.data(), bytes.constData(), size_t(text.size()) * 2);
  return text.remove(QChar(0)).remove(u'\r').split(u'\n');
}

// Each once, as LinksIn writes them.
QStringList AddressesIn(const QMimeData &data, const QStringList &lines, qsizetype most) {
  QStringList addresses = LinksIn(data, most);
  // Some tell only this.
  QMimeData titled;
  QList<QUrl> urls;
  for (qsizetype i = 0; i < lines.size(); i += 2) urls.append(QUrl(lines.at(i).trimmed()));
  titled.setUrls(urls);
  addresses += LinksIn(titled, most);
  addresses.removeDuplicates();
  return addresses.mid(0, most);
}

QString PlainText(const QString &html) {
  const bool isPlain = !html.contains(u'<') && !html.contains(u'&');
  return isPlain ? html : QTextDocumentFragment::fromHtml(html).toPlainText();
}

// Of these addresses. The first that is told of one counts.
QHash<QString, QString> TitlesIn(const QMimeData &data, const QStringList &lines, const QStringList &addresses) {
  QSet<QString> wanted(addresses.begin(), addresses.end());
  QHash<QString, QString> titles;
  const auto add = [&](const QString &address, const QString &html, bool isPlain) {
    if (!wanted.contains(address)) return;
    const QString title = (isPlain ? html : PlainText(html)).simplified();
    if (title.isEmpty()) return;
    titles.insert(address, title);
    wanted.remove(address);
  };
  for (qsizetype i = 0; i + 1 < lines.size(); i += 2) add(Encoded(lines.at(i)), lines.at(i + 1), true);
  if (wanted.isEmpty() || !data.hasHtml()) return titles;
  static const QRegularExpression link(
      QStringLiteral("<a\\b[^>]*\\bhref\\s*=\\s*[\"']([^\"']*)[\"'][^>]*>(.*?)</a>"),
      QRegularExpression::CaseInsensitiveOption | QRegularExpression::DotMatchesEverythingOption);
  const QString html = data.html().left(LongestHtml);
  for (auto matches = link.globalMatch(html); matches.hasNext() && !wanted.isEmpty();) {
    const QRegularExpressionMatch match = matches.next();
    add(Encoded(PlainText(match.captured(1))), match.captured(2), false);
  }
  return titles;
}

}  // namespace

QList<TDroppedLink> DroppedLinks(const QMimeData &data) {
  const QStringList lines = TitledLines(data);
  const QStringList addresses = AddressesIn(data, lines, MostLinks);
  const QHash<QString, QString> titles = TitlesIn(data, lines, addresses);
  QList<TDroppedLink> links;
  for (const QString &address : addresses) links.append({address, titles.value(address)});
  return links;
}

bool HasDroppedLinks(const QMimeData &data) {
  return !AddressesIn(data, TitledLines(data), 1).isEmpty();
}
