#pragma once

// Whether things may move that need not: what the user has told his desktop, as it was at the start.
namespace Motion {

void SetReduced(bool reduced);
[[nodiscard]] bool IsReduced();

}  // namespace Motion
