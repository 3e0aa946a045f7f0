#pragma once

#include <QString>

// What opens when the program starts (the setting StartupMode).
enum class TStartupMode {
  Home,   // the home page
  Blank,  // a blank page
  Last,   // the pages of the last time
  Group,  // the page group that the setting StartupHalvexGroup names
};

// The mode as it is stored.
[[nodiscard]] QString NameOf(TStartupMode mode);
// The stored mode; names are exact, and every other text means the page group.
[[nodiscard]] TStartupMode StartupModeOf(const QString &name);
