#include "config/startup_mode.h"

namespace {

// In the order of the modes.
constexpr const char *Names[] = {"Home", "Blank", "Last", "HalvexGroup"};

}  // namespace

QString NameOf(TStartupMode mode) {
  return QString::fromLatin1(Names[int(mode)]);
}

TStartupMode StartupModeOf(const QString &name) {
  for (const TStartupMode mode : {TStartupMode::Home, TStartupMode::Blank, TStartupMode::Last}) {
    if (name == NameOf(mode)) return mode;
  }
  return TStartupMode::Group;
}
