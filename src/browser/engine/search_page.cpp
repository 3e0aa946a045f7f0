#include "browser/engine/search_page.h"

#include <algorithm>
#include <QUrl>

namespace SearchPage {

QString First(std::initializer_list<QString> addresses) {
  const auto *first = std::ranges::find_if_not(addresses, &QString::isEmpty);
  return first != addresses.end() ? *first : QString::fromLatin1(Address);
}

std::optional<QString> WordsOf(const QString &address) {
  constexpr QLatin1String Start("def:find?q=");
  if (!address.startsWith(Start)) return std::nullopt;
  // As forms are sent: a blank is a plus sign.
  const QByteArray words = address.mid(Start.size()).toLatin1().replace('+', ' ');
  return QString::fromUtf8(QByteArray::fromPercentEncoding(words)).trimmed();
}

}  // namespace SearchPage
