#pragma once

#include <QByteArray>

// Whether the system has so little memory left that what is only there to be fast should go. False where the system
// does not tell.
[[nodiscard]] bool MemoryIsShort();
// The same, of what the system tells in `report`: lines as in /proc/meminfo, with the amounts in KiB.
[[nodiscard]] bool TellsOfShortMemory(const QByteArray &report);
