// Input: an address, and after part separators patterns.

#include "require.h"
#include "security/zone_map.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size) {
  const QList<QByteArray> parts = Fuzz::Input(data, size).split(Fuzz::Part);
  const QString address = Fuzz::Text(parts.first());
  TZoneMap nothing;
  const int plain = nothing.ZoneOf(address);
  REQUIRE(plain == -1 || plain == 0 || plain == 1 || plain == 3);
  QList<TZoneMapping> mappings;
  for (qsizetype i = 1; i < parts.size(); ++i) {
    const QString text = Fuzz::Text(parts[i]);
    mappings.append({text, int(i % 7) - 1});
    const std::optional<TZonePattern> pattern = TZonePattern::Of(text);
    if (!pattern) continue;
    // What is written reads as the same, and is one pattern with what it was read from.
    REQUIRE(TZonePattern::Of(pattern->Text()) == pattern);
    TZoneMap one;
    one.Set({{text, 4}, {pattern->Text(), 2}});
    const QString site = pattern->subDomains ? QStringLiteral("x.") + pattern->host : pattern->host;
    const QString host = site.contains(u':') ? u'[' + site + u']' : site;
    const QString scheme =
        pattern->scheme == TZonePattern::TScheme::Http ? QStringLiteral("http://") : QStringLiteral("https://");
    REQUIRE(one.ZoneOf(scheme + host) == 2 || host.size() > 255);
    REQUIRE(one.ZoneOf(scheme + host + QStringLiteral(":81/x?y#z")) == one.ZoneOf(scheme + host));
  }
  TZoneMap map;
  map.Set(mappings);
  const int zone = map.ZoneOf(address);
  REQUIRE(zone == plain || IsZone(zone));
  // Files and what is no address stay what they are, whatever is mapped.
  REQUIRE((plain != -1 && plain != 0) || zone == plain);
  return 0;
}
