#include "config/named_address.h"

#include <algorithm>

TNamedAddress TNamedAddress::AsRead() const {
  const qsizetype equals = name.indexOf(u'=');
  return equals < 0 ? *this : TNamedAddress{name.left(equals), name.sliced(equals + 1) + u'=' + address};
}

QString TNamedAddress::WebAddress() const {
  // As nearly every line is.
  if (!name.contains(u'=') &&
      (address.startsWith(QLatin1String("http://")) || address.startsWith(QLatin1String("https://")))) {
    return address;
  }
  const QString line = name + u'=' + address;
  const qsizetype plain = line.indexOf(QLatin1String("=http://"));
  const qsizetype secure = line.indexOf(QLatin1String("=https://"));
  const qsizetype start = plain < 0 || secure < 0 ? std::max(plain, secure) : std::min(plain, secure);
  return start < 0 ? address : line.sliced(start + 1);
}
