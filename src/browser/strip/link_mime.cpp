#include "browser/strip/link_mime.h"

#include <cstring>
#include <QMimeData>
#include <QUrl>

namespace {
constexpr qsizetype kLongestText = 8192;  // characters; a longer text is prose, not an address
constexpr qsizetype kMostLinks = 50;  // of one drag: a whole folder dropped by mistake must not open a thousand tabs

bool IsAddress(const QUrl &url) {
  if (!url.isValid()) return false;
  const QString scheme = url.scheme();
  if (scheme == QLatin1String("file")) return !url.path().isEmpty();
  const bool web =
      scheme == QLatin1String("http") || scheme == QLatin1String("https") || scheme == QLatin1String("ftp");
  return web && !url.host().isEmpty();
}
}  // namespace

QStringList LinksIn(const QMimeData &data) {
  QStringList links;
  const auto take = [&links](const QUrl &url) {
    if (IsAddress(url) && links.size() < kMostLinks) links.append(url.toString(QUrl::FullyEncoded));
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

TNamedAddresses NamedLinksIn(const QMimeData &data) {
  TNamedAddresses links;
  for (const QString &address : LinksIn(data)) links.append({.address = address});
  // In turn the lines of an address and of its title.
  const QByteArray bytes = data.data(QStringLiteral("text/x-moz-url"));
  QString text(bytes.size() / qsizetype(sizeof(char16_t)), Qt::Uninitialized);
  std::memcpy(text.data(), bytes.constData(), size_t(text.size()) * sizeof(char16_t));
  const QStringList lines = text.remove(u'\0').split(u'\n');
  for (qsizetype i = 0; i + 1 < lines.size(); i += 2) {
    const QString address = QUrl(lines.at(i).trimmed()).toString(QUrl::FullyEncoded);
    for (TNamedAddress &link : links) {
      if (link.name.isEmpty() && link.address == address) link.name = lines.at(i + 1).trimmed();
    }
  }
  return links;
}
