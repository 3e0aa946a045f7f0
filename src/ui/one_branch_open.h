#pragma once

#include <QObject>
#include <QScopedValueRollback>

class QModelIndex;
class QTreeView;

// Keeps a tree short: what is opened closes what stood open beside it on the same level, and stays under the mouse as
// it does. What the user opens with "*", all that is below, stays open.
class TOneBranchOpen final : public QObject {
  Q_OBJECT

 public:
  // The tree owns it. Off at first. The tree is to scroll by pixels.
  explicit TOneBranchOpen(QTreeView &tree);

  // What is open already stays so until the next is opened.
  void SetOn(bool isOn) { m_isOn = isOn; }
  // As long as the result lives, what is opened closes nothing.
  [[nodiscard]] auto Pause(bool isWanted = true) { return QScopedValueRollback(m_isPaused, m_isPaused || isWanted); }

 protected:
  bool eventFilter(QObject *watched, QEvent *event) override;

 private:
  void CloseBeside(const QModelIndex &opened);

  QTreeView &m_tree;
  bool m_isOn = false;
  bool m_isPaused = false;
};
