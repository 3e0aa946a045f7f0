#include "chrome/toolbar/button_list.h"

#include <QCoreApplication>
#include <QDropEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QStyle>

namespace {

// The process, the list and the row: what is dragged here from another process is none of ours.
const QString Format = QStringLiteral("application/x-zarvela-toolbar-item");

}  // namespace

TButtonList::TButtonList(QWidget *parent) : QListWidget(parent) {
  setDragDropMode(QAbstractItemView::DragDrop);
  setUniformItemSizes(true);
  const int icon = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
  setIconSize(QSize(icon, icon));
  connect(this, &QListWidget::itemDoubleClicked, this, &TButtonList::Chosen);
}

int TButtonList::SelectedRow() const {
  const QModelIndexList rows = selectionModel()->selectedRows();
  return rows.isEmpty() ? -1 : rows.first().row();
}

void TButtonList::SelectRow(int row) {
  setCurrentRow(row >= 0 && row < count() ? row : -1);
  if (row < 0 || row >= count()) clearSelection();
}

QMimeData *TButtonList::mimeData(const QList<QListWidgetItem *> &items) const {
  QMimeData *data = QListWidget::mimeData(items);
  if (data == nullptr || items.isEmpty()) return data;
  const QStringList parts{QString::number(QCoreApplication::applicationPid()), objectName(),
                          QString::number(row(items.first()))};
  data->setData(Format, parts.join(u' ').toUtf8());
  return data;
}

void TButtonList::keyPressEvent(QKeyEvent *event) {
  const bool isCtrl = event->modifiers().testFlag(Qt::ControlModifier);
  switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      Q_EMIT Chosen();
      return;
    case Qt::Key_Delete:
      Q_EMIT RemoveWanted();
      return;
    case Qt::Key_Up:
    case Qt::Key_Down:
      if (!isCtrl) break;
      Q_EMIT MoveWanted(event->key() == Qt::Key_Up ? -1 : 1);
      return;
    default:
      break;
  }
  QListWidget::keyPressEvent(event);
}

void TButtonList::dragEnterEvent(QDragEnterEvent *event) {
  if (event->mimeData()->hasFormat(Format)) {
    QListWidget::dragEnterEvent(event);
  } else {
    event->ignore();
  }
}

void TButtonList::dropEvent(QDropEvent *event) {
  stopAutoScroll();
  setState(NoState);
  viewport()->update();
  const QStringList parts = QString::fromUtf8(event->mimeData()->data(Format)).split(u' ');
  if (parts.size() != 3 || parts.first() != QString::number(QCoreApplication::applicationPid())) {
    event->ignore();
    return;
  }
  const QPoint at = event->position().toPoint();
  const QModelIndex under = indexAt(at);
  int row = count();
  if (under.isValid()) row = under.row() + (at.y() > visualRect(under).center().y() ? 1 : 0);
  // As a copy: the other list would take its item away otherwise.
  event->setDropAction(Qt::CopyAction);
  event->accept();
  Q_EMIT Dropped(parts.at(1), parts.at(2).toInt(), row);
}
