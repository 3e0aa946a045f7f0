#include "browser/page/origin_text.h"

#include <QUrl>

#include "config/language.h"
#include "ui/shown_address.h"

namespace {

constexpr int LongestOrigin = 80;

}  // namespace

QString OriginText(const QUrl &origin, const TLanguage &language) {
  if (origin.isLocalFile()) return language.Text("ORIGIN", "LocalFile");
  const QString host = origin.host(QUrl::FullyEncoded);
  if (host.isEmpty()) return language.Text("ORIGIN", "ThisPage");
  QString text = ShownHost(host);
  if (origin.scheme() != "https") text.prepend(origin.scheme() + "://");
  if (origin.port() != -1) text += ':' + QString::number(origin.port());
  // The end of a host name says whose it is, so a long one loses its beginning.
  return text.size() > LongestOrigin ? QChar(0x2026) + text.right(LongestOrigin) : text;
}
