#include "config/named_address.h"

TNamedAddress TNamedAddress::AsRead() const {
  const qsizetype equals = name.indexOf(u'=');
  return equals < 0 ? *this : TNamedAddress{name.left(equals), name.sliced(equals + 1) + u'=' + address};
}

QString TNamedAddress::WebAddress() const {
  const QString line = name + u'=' + address;
  for (const char *start : {"=http://", "=https://"}) {
    const qsizetype equals = line.indexOf(QLatin1String(start));
    if (equals >= 0) return line.sliced(equals + 1);
  }
  return address;
}
