#include "config/named_address.h"

#include <QRegularExpression>

TNamedAddress TNamedAddress::AsRead() const {
  const qsizetype equals = name.indexOf(u'=');
  return equals < 0 ? *this : TNamedAddress{name.left(equals), name.sliced(equals + 1) + u'=' + address};
}

QString TNamedAddress::WebAddress() const {
  const QString line = name + u'=' + address;
  static const QRegularExpression start(QStringLiteral("=(?=https?://)"));
  const QRegularExpressionMatch match = start.match(line);
  return match.hasMatch() ? line.sliced(match.capturedEnd()) : address;
}
