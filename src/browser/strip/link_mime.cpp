#include "browser/strip/link_mime.h"

#include <QMimeData>
#include <QUrl>

#include "platform/web_address.h"

namespace {
constexpr qsizetype kLongestText = 8192;  // characters; a longer text is prose, not an address

bool IsAddress(const QUrl &url) {
  if (!url.isValid()) return false;
  if (url.scheme() == QLatin1String("file")) return !url.path().isEmpty();
  return (WebAddress::Is(url) || url.scheme() == QLatin1String("ftp")) && !url.host().isEmpty();
}
}  // namespace

QStringList LinksIn(const QMimeData &data, qsizetype most) {
  QStringList links;
  const auto take = [&links, most](const QUrl &url) {
    if (links.size() < most && IsAddress(url)) links.append(url.toString(QUrl::FullyEncoded));
  };
  if (data.hasUrls()) {
    const QList<QUrl> urls = data.urls();
    for (const QUrl &url : urls) take(url);
  } else if (data.hasText()) {
    const QString text = data.text().trimmed();
    if (text.size() <= kLongestText) take(QUrl(text, QUrl::StrictMode));
  }
  return links;
}
