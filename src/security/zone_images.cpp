#include "security/zone_images.h"

#include <array>

namespace {

constexpr std::array Names{"zone_machine", "zone_intranet", "zone_trusted", "zone_internet", "zone_restricted", "lock"};

}  // namespace

QIcon ZoneImages::Of(int index) {
  if (index < 0 || index >= int(Names.size())) return {};
  return QIcon(QStringLiteral(":/icons/%1.svg").arg(QLatin1String(Names[size_t(index)])));
}
