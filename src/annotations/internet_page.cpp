#include "annotations/internet_page.h"

#include <algorithm>
#include <QHostAddress>
#include <QUrl>

#include "platform/web_address.h"

namespace {

// Of the IPv6 addresses only 2000::/3 is given out at all.
constexpr const char *GlobalSixes = "2000::/3";
constexpr const char *SpecialNumbers[] = {
    "0.0.0.0/8",    "10.0.0.0/8",   "100.64.0.0/10",  "127.0.0.0/8",   "169.254.0.0/16",  "172.16.0.0/12",
    "192.0.0.0/24", "192.0.2.0/24", "192.168.0.0/16", "198.18.0.0/15", "198.51.100.0/24", "203.0.113.0/24",
    "224.0.0.0/3",  "2001::/23",    "2001:db8::/32",  "2002::/16",
};

// Names that no server of the Internet answers for.
constexpr const char *OwnNames[] = {"localhost", "local",     "internal", "intranet",    "private", "corp", "home",
                                    "lan",       "home.arpa", "test",     "localdomain", "invalid", "onion"};

bool IsWithin(const QHostAddress &address, const char *net) {
  return address.isInSubnet(QHostAddress::parseSubnet(QLatin1String(net)));
}

bool IsInternetNumber(const QHostAddress &address) {
  bool isFour = false;
  // Also what an IPv6 address only wraps.
  const QHostAddress four(address.toIPv4Address(&isFour));
  const QHostAddress &number = isFour ? four : address;
  if (!isFour && !IsWithin(number, GlobalSixes)) return false;
  return std::ranges::none_of(SpecialNumbers, [&number](const char *net) { return IsWithin(number, net); });
}

bool IsOwnName(const QString &name) {
  return std::ranges::any_of(OwnNames, [&name](const char *own) {
    return name == QLatin1String(own) || name.endsWith(u'.' + QLatin1String(own));
  });
}

}  // namespace

bool IsInternetHost(const QString &host) {
  QString name = host.toLower();
  if (name.endsWith(u'.')) name.chop(1);
  if (const QHostAddress number(name); !number.isNull()) return IsInternetNumber(number);
  return name.contains(u'.') && !name.startsWith(u'.') && !IsOwnName(name);
}

bool IsInternetPage(const QString &address) {
  const QUrl url(address);
  return WebAddress::Is(url) && IsInternetHost(url.host(QUrl::FullyEncoded));
}
