#pragma once

#include <QList>
#include <QtGlobal>

// A process with all that it started, from /proc.
namespace ProcessTree {

// `root` and its descendants; empty when it is gone.
[[nodiscard]] QList<qint64> Processes(qint64 root);
// The proportional set size of all of them together, in KiB: private memory in full, shared memory by its share.
[[nodiscard]] qint64 ProportionalSetSize(const QList<qint64> &processes);
// Ends them without asking.
void Kill(const QList<qint64> &processes);

}  // namespace ProcessTree
