#include "process_tree.h"

#include <csignal>
#include <QDir>
#include <QFile>
#include <QMultiHash>

namespace ProcessTree {

QList<qint64> Processes(qint64 root) {
  QMultiHash<qint64, qint64> children;
  for (const QString &name : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs)) {
    bool isNumber = false;
    const qint64 process = name.toLongLong(&isNumber);
    QFile file(QStringLiteral("/proc/%1/stat").arg(process));
    if (!isNumber || !file.open(QFile::ReadOnly)) continue;
    // "pid (name) state parent ...", where the name may hold anything.
    const QByteArray line = file.readAll();
    const QList<QByteArray> fields = line.mid(line.lastIndexOf(')') + 2).split(' ');
    if (fields.size() > 1) children.insert(fields[1].toLongLong(), process);
  }
  if (root <= 0 || !QFile::exists(QStringLiteral("/proc/%1").arg(root))) return {};
  QList<qint64> found{root};
  for (qsizetype next = 0; next < found.size(); ++next) found += children.values(found[next]);
  return found;
}

qint64 ProportionalSetSize(const QList<qint64> &processes) {
  qint64 sum = 0;
  for (const qint64 process : processes) {
    QFile file(QStringLiteral("/proc/%1/smaps_rollup").arg(process));
    if (!file.open(QFile::ReadOnly)) continue;
    for (const QByteArray &line : file.readAll().split('\n')) {
      if (line.startsWith("Pss:")) sum += line.mid(4).trimmed().split(' ').first().toLongLong();
    }
  }
  return sum;
}

void Kill(const QList<qint64> &processes) {
  for (const qint64 process : processes) ::kill(pid_t(process), SIGKILL);
}

}  // namespace ProcessTree
