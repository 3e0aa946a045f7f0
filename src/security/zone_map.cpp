#include "security/zone_map.h"

#include <algorithm>
#include <QUrl>

namespace {

using TScheme = TZonePattern::TScheme;

constexpr qsizetype LongestPattern = 2048;
constexpr qsizetype LongestHost = 255;  // as the domain name system has it
constexpr int DeepestNesting = 4;       // of addresses within addresses
constexpr QLatin1String Source("view-source:");

bool IsPlainHostSign(QChar sign) {
  return (sign >= u'a' && sign <= u'z') || (sign >= u'0' && sign <= u'9') || sign == u'-' || sign == u'.';
}

bool IsDigit(QChar sign) {
  return sign >= u'0' && sign <= u'9';
}

bool IsNumber(QStringView text) {
  return !text.isEmpty() && std::ranges::all_of(text, IsDigit);
}

// What stands before the address of the page that an address is a part or the source of; mostly nothing.
QLatin1String OuterOf(const QString &address) {
  for (const QLatin1String outer : {Source, QLatin1String("blob:"), QLatin1String("filesystem:")}) {
    if (address.startsWith(outer, Qt::CaseInsensitive)) return outer;
  }
  return {};
}

QStringView LastLabel(QStringView host) {
  return host.sliced(host.lastIndexOf(u'.') + 1);
}

// The host of an address that is written plainly, as nearly all are; empty where the address must be looked at closely.
QStringView PlainHost(QStringView behindScheme) {
  const auto *const end = std::ranges::find_if_not(behindScheme, IsPlainHostSign);
  const QStringView host(behindScheme.begin(), end);
  QStringView rest = behindScheme.sliced(host.size());
  if (rest.startsWith(u':')) {
    rest = rest.sliced(1);
    qsizetype digits = 0;
    while (digits < rest.size() && IsDigit(rest[digits])) ++digits;
    if (digits == 0 || digits > 4) return {};
    rest = rest.sliced(digits);
  }
  if (!rest.isEmpty() && rest[0] != u'/') return {};
  const bool isOdd = host.size() > LongestHost || host.startsWith(u'.') || host.endsWith(u'.') ||
                     host.contains(QLatin1String("..")) || host.contains(QLatin1String("xn--")) ||
                     IsNumber(LastLabel(host)) || LastLabel(host).startsWith(QLatin1String("0x"));
  return isOdd ? QStringView() : host;
}

// As it is compared: ASCII, lower case, no dot behind it.
QString HostOf(const QUrl &url) {
  QString host = url.host(QUrl::FullyEncoded).toLower();
  if (!host.endsWith(u'.')) return host;
  host.chop(1);
  // Without its dot it may be a number's short form.
  QUrl plain;
  plain.setHost(host, QUrl::StrictMode);
  return plain.host(QUrl::FullyEncoded).toLower();
}

TScheme SchemeOf(QStringView scheme) {
  if (scheme == u"http" || scheme == u"ws") return TScheme::Http;
  if (scheme == u"https" || scheme == u"wss") return TScheme::Https;
  return TScheme::Any;
}

bool IsAddressNumber(const QString &host) {
  return host.contains(u':') || IsNumber(LastLabel(host));
}

}  // namespace

std::optional<TZonePattern> TZonePattern::Of(const QString &text) {
  if (text.size() > LongestPattern) return std::nullopt;
  TZonePattern pattern;
  QString host = text;
  if (const qsizetype end = text.indexOf(QLatin1String("://")); end >= 0) {
    const QString scheme = text.first(end).toLower();
    if (scheme == QLatin1String("http")) {
      pattern.scheme = TScheme::Http;
    } else if (scheme == QLatin1String("https")) {
      pattern.scheme = TScheme::Https;
    } else if (scheme != QLatin1String("*")) {
      return std::nullopt;
    }
    host = text.sliced(end + 3);
  }
  if (host.startsWith(QLatin1String("*."))) {
    pattern.subDomains = true;
    host = host.sliced(2);
  }
  const QUrl url(QLatin1String("http://") + host, QUrl::StrictMode);
  const bool isMore = url.hasQuery() || url.hasFragment() || host.contains(u'@') || host.contains(u'*') ||
                      !(url.path().isEmpty() || url.path() == QLatin1String("/"));
  if (!url.isValid() || isMore) return std::nullopt;
  pattern.host = HostOf(url);
  if (pattern.host.isEmpty() || pattern.host.size() > LongestHost) return std::nullopt;
  if (pattern.subDomains && IsAddressNumber(pattern.host)) return std::nullopt;
  return pattern;
}

QString TZonePattern::Text() const {
  QString text;
  if (scheme != TScheme::Any) text = scheme == TScheme::Http ? QStringLiteral("http://") : QStringLiteral("https://");
  if (subDomains) text += QLatin1String("*.");
  return text + (host.contains(u':') ? u'[' + host + u']' : host);
}

void TZoneMap::Set(const QList<TZoneMapping> &mappings) {
  m_hosts.clear();
  m_hosts.reserve(size_t(mappings.size()));
  for (const TZoneMapping &mapping : mappings) {
    if (!IsZone(mapping.zone)) continue;
    const std::optional<TZonePattern> pattern = TZonePattern::Of(mapping.pattern);
    if (!pattern) continue;
    TZones &zones = m_hosts[pattern->host];
    (pattern->subDomains ? zones.below : zones.own)[size_t(pattern->scheme)] = static_cast<signed char>(mapping.zone);
  }
}

QString TZoneMap::PageOf(const QString &address) {
  QString page = address;
  for (int depth = 0; depth < DeepestNesting; ++depth) page.remove(0, OuterOf(page).size());
  return page;
}

int TZoneMap::ZoneOf(const QString &address) const {
  return ZoneOf(address, 0);
}

int TZoneMap::ZoneOf(const QString &address, int depth) const {
  for (const auto &[begin, scheme] : {std::pair(u"http://", TScheme::Http), {u"https://", TScheme::Https}}) {
    if (!address.startsWith(QStringView(begin))) continue;
    const QStringView host = PlainHost(QStringView(address).sliced(QStringView(begin).size()));
    if (!host.isEmpty()) return ZoneOfHost(host, scheme);
  }
  if (const QLatin1String outer = OuterOf(address); !outer.isEmpty()) {
    if (depth == DeepestNesting) return ZoneNumber::Unknown;
    const int zone = ZoneOf(address.sliced(outer.size()), depth + 1);
    if (outer == Source) return zone;
    // Who has made it is not told in every such address; it is never more than a page of the Internet then.
    return zone == ZoneNumber::LocalMachine || zone == ZoneNumber::Unknown ? ZoneNumber::Internet : zone;
  }
  const QUrl url(address);
  const QString scheme = url.scheme();
  if (!url.isValid() || scheme.isEmpty()) return ZoneNumber::Unknown;
  if (scheme == QLatin1String("file") || scheme == QLatin1String("zarvela")) return ZoneNumber::LocalMachine;
  const QString host = HostOf(url);
  if (!host.isEmpty()) return ZoneOfHost(host, SchemeOf(scheme));
  return SchemeOf(scheme) == TScheme::Any ? ZoneNumber::Internet : ZoneNumber::Unknown;
}

int TZoneMap::ZoneOfHost(QStringView host, TScheme scheme) const {
  const auto choose = [scheme](const std::array<signed char, SchemeCount> &zones) {
    const int named = zones[size_t(scheme)];
    return named != NoZone ? named : zones[size_t(TScheme::Any)];
  };
  if (!m_hosts.empty() && host.size() <= LongestHost) {
    if (const auto found = m_hosts.find(host); found != m_hosts.end()) {
      if (const int zone = choose(found->second.own); zone != NoZone) return zone;
    }
    for (qsizetype dot = host.indexOf(u'.'); dot >= 0; dot = host.indexOf(u'.', dot + 1)) {
      const auto found = m_hosts.find(host.sliced(dot + 1));
      if (found == m_hosts.end()) continue;
      if (const int zone = choose(found->second.below); zone != NoZone) return zone;
    }
  }
  return host.contains(u'.') || host.contains(u':') ? ZoneNumber::Internet : ZoneNumber::LocalIntranet;
}
