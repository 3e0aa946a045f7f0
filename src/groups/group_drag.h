#pragma once

#include <QList>
#include <QMimeData>

#include "groups/group_pages.h"

// Pages on their way into a group: pages of groups, which may be moved, and tabs.
namespace GroupDrag {

struct TPage {
  QString file{};  // the group that it is in; none for a tab
  TGroupLine line{};
};

// Puts them into what is dragged, with their addresses for other programs, unless there are some already.
void AddTo(QMimeData &data, const QList<TPage> &pages);
// The line that a tab has in a group.
[[nodiscard]] QString LineOf(const QString &name, const QString &address, bool isLocked);

[[nodiscard]] bool HasPages(const QMimeData &data);
// Whatever bytes there are: what is no page of a group file does not count. At most 5000.
[[nodiscard]] QList<TPage> PagesIn(const QMimeData &data);

}  // namespace GroupDrag
