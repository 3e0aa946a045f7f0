#include "browser/page/zone_name.h"

#include <array>

#include "config/language.h"

namespace {

constexpr std::array<TTextKey, 5> Names{{
    {"SECURITY", "Zone0"},
    {"SECURITY", "Zone1"},
    {"SECURITY", "Zone2"},
    {"SECURITY", "Zone3"},
    {"SECURITY", "Zone4"},
}};

}  // namespace

QString ZoneName(int zone, const TLanguage &language) {
  if (zone < 0 || zone >= int(Names.size())) return {};
  return language.Text(Names[size_t(zone)]);
}
