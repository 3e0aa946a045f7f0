#pragma once

// Notification areas that draw the icons by themselves, as they are told over the session bus (StatusNotifierItem).
namespace StatusNotifier {

// Whether somebody takes icons there.
[[nodiscard]] bool IsThere();
// Whether somebody shows them at this moment: a panel that has ended has left its icons to nobody. Waits a second for
// the answer at most.
[[nodiscard]] bool HasHost();

}  // namespace StatusNotifier
