#pragma once

// Whether the user's session has a D-Bus to ask. Looking for one where there is none would start it.
[[nodiscard]] bool HasSessionBus();
