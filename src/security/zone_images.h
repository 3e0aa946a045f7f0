#pragma once

#include <QIcon>

// The pictures of the security zones (ilZones): by the zone's number, and behind them the padlock of encryption.
namespace ZoneImages {

inline constexpr int Padlock = 5;

// No picture for -1 and anything else that there is none of.
[[nodiscard]] QIcon Of(int index);

}  // namespace ZoneImages
