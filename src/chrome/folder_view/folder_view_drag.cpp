#include <algorithm>
#include <QApplication>
#include <QDrag>
#include <QDropEvent>
#include <QMimeData>
#include <QPainter>
#include <QScrollBar>
#include <QStyleOption>

#include "chrome/folder_view/dropped_favorites.h"
#include "chrome/folder_view/folder_editor.h"
#include "chrome/folder_view/folder_view.h"
#include "config/language.h"
#include "favorites/favorite_drag.h"

namespace {

// Milliseconds.
constexpr int OpensAfter = 700;
constexpr int ScrollsEvery = 30;
// Pixels.
constexpr int EdgeHeight = 16;
constexpr int ScrollStep = 8;
// Of so many files the addresses go along as text.
constexpr qsizetype MostAddresses = 200;

bool IsWithin(const QString &folder, const QStringList &paths) {
  return std::ranges::any_of(
      paths, [&folder](const QString &path) { return folder == path || folder.startsWith(path + u'/'); });
}

}  // namespace

QMimeData *TFolderView::SelectedData() const {
  QStringList paths;
  QStringList addresses;
  for (const TFavorite &favorite : Selected()) {
    paths.append(favorite.path);
    if (!favorite.isFolder && addresses.size() < MostAddresses) addresses.append(FavoritesFolder::Target(favorite));
  }
  QMimeData *data = FavoriteDrag::DataOf(paths);
  if (!addresses.isEmpty()) data->setText(addresses.join(u'\n'));
  return data;
}

void TFolderView::startDrag(Qt::DropActions) {
  if (Selected().isEmpty()) return;
  auto *drag = new QDrag(this);
  drag->setMimeData(SelectedData());
  drag->setPixmap(
      m_model.data(currentIndex(), Qt::DecorationRole).value<QIcon>().pixmap(iconSize().expandedTo({16, 16})));
  // Nothing is taken away here. The places that favorites have in this program move them all the same; a file manager
  // that has no wish of its own is to leave them where they are.
  drag->exec(Qt::CopyAction | Qt::MoveAction | Qt::LinkAction, Qt::CopyAction);
}

TFolderView::TDrop TFolderView::DropAt(const QPoint &place) const {
  const QModelIndex over = indexAt(place);
  if (!over.isValid() || over == m_model.RootIndex()) return {m_model.RootIndex(), -1};
  const QRect row = visualRect(over);
  if (!m_model.At(over).isFolder) {
    return {over.parent(), place.y() <= row.center().y() ? over.row() : over.row() + 1};
  }
  const int quarter = qMax(1, row.height() / 4);
  if (place.y() < row.top() + quarter) return {over.parent(), over.row()};
  if (place.y() <= row.bottom() - quarter) return {over, -1};
  // Below the row of an open folder stands the first that is in it.
  if (isExpanded(over) && m_model.rowCount(over) > 0) return {over, 0};
  return {over.parent(), over.row() + 1};
}

int TFolderView::PositionOf(const TDrop &drop) const {
  if (drop.row < 0) return FavoritesEdit::NoPosition;
  const TFavorites all = FavoritesFolder::List(m_model.At(drop.folder).path);
  // Not all of them need be shown here.
  const QString before = m_model.At(m_model.index(drop.row, 0, drop.folder)).path;
  const auto place = std::ranges::find(all, before, &TFavorite::path);
  return int(place - all.begin());
}

QRect TFolderView::IndicatorOf(const TDrop &drop) const {
  if (!drop.folder.isValid()) return {};
  if (drop.row < 0) {
    return drop.folder == rootIndex() ? viewport()->rect() : visualRect(drop.folder);
  }
  const QModelIndex below = m_model.index(drop.row, 0, drop.folder);
  const QModelIndex above = m_model.index(drop.row - 1, 0, drop.folder);
  const QRect row = visualRect(below.isValid() ? below : above);
  return {row.left(), below.isValid() ? row.top() : row.bottom(), row.width(), 0};
}

void TFolderView::paintEvent(QPaintEvent *event) {
  QTreeView::paintEvent(event);
  const QRect indicator = IndicatorOf(m_drop);
  if (!indicator.isValid() && indicator.width() <= 0) return;
  QPainter painter(viewport());
  QStyleOption option;
  option.initFrom(this);
  option.rect = indicator;
  style()->drawPrimitive(QStyle::PE_IndicatorItemViewItemDrop, &option, &painter, this);
}

void TFolderView::dragEnterEvent(QDragEnterEvent *event) {
  if (DroppedFavorites::CanTake(*event->mimeData())) {
    event->acceptProposedAction();
  } else {
    event->ignore();
  }
}

void TFolderView::dragMoveEvent(QDragMoveEvent *event) {
  const QPoint place = event->position().toPoint();
  const QModelIndex hovered = m_drop.row < 0 ? QModelIndex(m_drop.folder) : QModelIndex();
  m_drop = DropAt(place);
  const QModelIndex now = m_drop.row < 0 ? QModelIndex(m_drop.folder) : QModelIndex();
  if (now != hovered) m_hover.start(OpensAfter);
  ScrollAtEdge(place);
  viewport()->update();
  if (!m_drop.folder.isValid()) {
    event->ignore();
    return;
  }
  DroppedFavorites::Propose(*event);
}

void TFolderView::ScrollAtEdge(const QPoint &place) {
  const int height = viewport()->height();
  m_scrollStep = place.y() < EdgeHeight ? -ScrollStep : place.y() >= height - EdgeHeight ? ScrollStep : 0;
  if (m_scrollStep == 0) {
    m_scroll.stop();
  } else if (!m_scroll.isActive()) {
    m_scroll.start(ScrollsEvery);
  }
}

void TFolderView::dragLeaveEvent(QDragLeaveEvent *) {
  EndDrag();
}

void TFolderView::EndDrag() {
  m_hover.stop();
  m_scroll.stop();
  m_drop = {};
  viewport()->update();
}

void TFolderView::dropEvent(QDropEvent *event) {
  const TDrop drop = DropAt(event->position().toPoint());
  const bool isCopied = DroppedFavorites::IsCopied(*event);
  EndDrag();
  // The one that it comes from takes nothing away: that is done here.
  event->setDropAction(Qt::CopyAction);
  event->accept();
  if (!drop.folder.isValid()) return;
  const QStringList paths = FavoriteDrag::PathsIn(*event->mimeData());
  if (IsRefused(*event->mimeData(), paths)) return;
  const QString folder = m_model.At(drop.folder).path;
  if (IsWithin(folder, paths)) {
    Q_EMIT Told(m_language.Text("FOLDER_VIEW", "IntoItself"));
    return;
  }
  Do(DroppedFavorites::Take(*event->mimeData(), folder, PositionOf(drop), isCopied));
}
