#pragma once

#include <optional>
#include <QByteArray>
#include <QString>

// Whether the system has so little memory left that what is only there to be fast should go. False where the system
// does not tell.
[[nodiscard]] bool MemoryIsShort();
// The same, of what the system tells in `report`: lines as in /proc/meminfo, with the amounts in KiB.
[[nodiscard]] bool TellsOfShortMemory(const QByteArray &report);

// Gives what the program has freed, and the allocator keeps for what may come, back to the system. Takes some
// hundredths of a second, on any thread.
void ReturnFreedMemory();

// Whether programs have lately lost much of their time waiting for memory: what the system tells of that in `file`, or
// MemoryIsShort where it does not.
[[nodiscard]] bool MemoryIsUnderPressure(const QString &file = QStringLiteral("/proc/pressure/memory"));
// The same, of a report: a line "some avg10=0.00 avg60=…", the percentage of the last ten seconds in which a program
// waited. Nothing where there is no such line.
[[nodiscard]] std::optional<bool> TellsOfPressure(const QByteArray &report);
