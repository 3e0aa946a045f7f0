#include "browser/engine/search_page.h"

#include <QUrl>

namespace SearchPage {

std::optional<QString> WordsOf(const QString &address) {
  constexpr QLatin1String Start("def:find?q=");
  if (!address.startsWith(Start)) return std::nullopt;
  // As forms are sent: a blank is a plus sign.
  const QByteArray words = address.mid(Start.size()).toLatin1().replace('+', ' ');
  return QString::fromUtf8(QByteArray::fromPercentEncoding(words)).trimmed();
}

}  // namespace SearchPage
