#include "ui/one_branch_open.h"

#include <algorithm>
#include <QKeyEvent>
#include <QScrollBar>
#include <QTreeView>

namespace {

bool IsBelow(QModelIndex index, const QModelIndex &above) {
  while (index.isValid() && index != above) index = index.parent();
  return index.isValid();
}

}  // namespace

TOneBranchOpen::TOneBranchOpen(QTreeView &tree) : QObject(&tree), m_tree(tree) {
  tree.installEventFilter(this);
  connect(&tree, &QTreeView::expanded, this, &TOneBranchOpen::CloseBeside);
}

bool TOneBranchOpen::eventFilter(QObject *, QEvent *event) {
  if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent *>(event)->key() == Qt::Key_Asterisk && !m_isPaused) {
    // Until the tree is done with the key.
    m_isPaused = true;
    QMetaObject::invokeMethod(
        this, [this] { m_isPaused = false; }, Qt::QueuedConnection);
  }
  return false;
}

void TOneBranchOpen::CloseBeside(const QModelIndex &opened) {
  if (!m_isOn || m_isPaused) return;
  const QAbstractItemModel &model = *opened.model();
  const QModelIndex level = opened.parent();
  QModelIndexList others;
  for (int row = 0; row < model.rowCount(level); ++row) {
    const QModelIndex other = model.index(row, 0, level);
    if (other != opened && m_tree.isExpanded(other)) others.append(other);
  }
  if (others.isEmpty()) return;
  const QModelIndex current = m_tree.currentIndex();
  const bool isCurrentHidden = std::ranges::any_of(
      others, [&current](const QModelIndex &other) { return other != current && IsBelow(current, other); });
  const QRect before = m_tree.visualRect(opened);
  for (const QModelIndex &other : std::as_const(others)) m_tree.collapse(other);
  // No command is to mean what is not to be seen any more.
  if (isCurrentHidden) m_tree.setCurrentIndex(opened);
  const QRect after = m_tree.visualRect(opened);
  if (!before.isValid() || !after.isValid()) return;
  QScrollBar &bar = *m_tree.verticalScrollBar();
  bar.setValue(bar.value() + after.top() - before.top());
}
