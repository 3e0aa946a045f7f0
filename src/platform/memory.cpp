#include "platform/memory.h"

#include <QFile>
#include <QList>

namespace {

constexpr qint64 Enough = 512 * 1024;  // KiB

}  // namespace

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
