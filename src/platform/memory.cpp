#include "platform/memory.h"

#include <malloc.h>
#include <QFile>
#include <QList>

namespace {

constexpr qint64 Enough = 512 * 1024;  // KiB
constexpr double Pressure = 10;        // percent of the time

}  // namespace

void ReturnFreedMemory() {
#ifdef __GLIBC__
  ::malloc_trim(0);
#endif
}

bool MemoryIsShort() {
  QFile report(QStringLiteral("/proc/meminfo"));
  return report.open(QFile::ReadOnly) && TellsOfShortMemory(report.readAll());
}

bool TellsOfShortMemory(const QByteArray &report) {
  for (const QByteArray &line : report.split('\n')) {
    if (!line.startsWith("MemAvailable:")) continue;
    bool isNumber = false;
    const qint64 available = line.simplified().split(' ').value(1).toLongLong(&isNumber);
    return isNumber && available < Enough;
  }
  return false;
}

bool MemoryIsUnderPressure(const QString &file) {
  QFile report(file);
  const std::optional<bool> told = report.open(QFile::ReadOnly) ? TellsOfPressure(report.readAll()) : std::nullopt;
  return told ? *told : MemoryIsShort();
}

std::optional<bool> TellsOfPressure(const QByteArray &report) {
  constexpr QByteArrayView Start("some avg10=");
  for (const QByteArray &line : report.split('\n')) {
    if (!line.startsWith(Start)) continue;
    bool isNumber = false;
    const double waited = line.mid(Start.size()).split(' ').value(0).toDouble(&isNumber);
    if (isNumber) return waited >= Pressure;
  }
  return std::nullopt;
}
