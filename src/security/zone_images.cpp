#include "security/zone_images.h"

#include <array>

namespace {

constexpr std::array Names{"zone_machine", "zone_intranet", "zone_trusted", "zone_internet", "zone_restricted", "lock"};

}  // namespace

QIcon ZoneImages::Of(int index) {
  if (index < 0 || index >= int(Names.size())) return {};
  // They are asked for at each turn to another tab, so the drawings are read once; they stay, since a picture may not
  // outlive the application.
  static auto &images = *new std::array<QIcon, Names.size()>;
  QIcon &image = images[size_t(index)];
  if (image.isNull()) image = QIcon(QStringLiteral(":/icons/%1.svg").arg(QLatin1String(Names[size_t(index)])));
  return image;
}
