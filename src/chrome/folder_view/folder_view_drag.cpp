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
#include "chrome/folder_view/folder_kind.h"
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

// The place in the folder, in FavoritesEdit's sense, before that favorite. Not all of them need be shown in a view.
int PlaceBefore(const QString &favorite, const QString &folder) {
  const TFavorites all = FavoritesFolder::List(folder);
  return int(std::ranges::find(all, favorite, &TFavorite::path) - all.begin());
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
  const bool areParts = ArePartsSelected();
  if (!areParts && Selected().isEmpty()) return;
  auto *drag = new QDrag(this);
  drag->setMimeData(areParts ? m_kind.Parts()->DataOf(SelectedParts()) : SelectedData());
  drag->setPixmap(
      m_model.data(currentIndex(), Qt::DecorationRole).value<QIcon>().pixmap(iconSize().expandedTo({16, 16})));
  // Nothing is taken away here. The places that favorites have in this program move them all the same; a file manager
  // that has no wish of its own is to leave them where they are.
  drag->exec(Qt::CopyAction | Qt::MoveAction | Qt::LinkAction, Qt::CopyAction);
}

TFolderView::TDrop TFolderView::DropAt(const QPoint &place) const {
  if (m_fitsFiles) {
    if (const TDrop drop = PartsDropAt(place); drop.folder.isValid() || !m_fitsFolders) return drop;
  }
  QModelIndex over = indexAt(place);
  if (m_model.IsPart(over)) return {over.parent().parent(), over.parent().row() + 1};
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
  m_fitsFolders = m_kind.CanTake(*event->mimeData());
  m_fitsFiles = m_kind.Parts() != nullptr && m_kind.Parts()->CanTake(*event->mimeData());
  if (m_fitsFolders || m_fitsFiles) {
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
  const bool isMovedPart = IsDropIntoFile(m_drop) && m_kind.Parts()->AreParts(*event->mimeData()) &&
                           !event->modifiers().testFlag(Qt::ControlModifier);
  if (isMovedPart && event->possibleActions().testFlag(Qt::MoveAction)) {
    event->setDropAction(Qt::MoveAction);
    event->accept();
  } else {
    DroppedFavorites::Propose(*event);
  }
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
  if (IsDropIntoFile(drop)) {
    DropIntoFile(drop, *event);
    return;
  }
  const DroppedFavorites::TDropped dropped = DroppedFavorites::In(*event->mimeData());
  const QString folder = m_model.At(drop.folder).path;
  if (IsWithin(folder, dropped.paths)) {
    Q_EMIT Told(m_language.Text("FOLDER_VIEW", "IntoItself"));
    return;
  }
  const bool isInto = drop.row < 0;
  DoWith(dropped, [=, before = m_model.At(m_model.index(drop.row, 0, drop.folder)).path] {
    const int position = isInto ? FavoritesEdit::NoPosition : PlaceBefore(before, folder);
    return DroppedFavorites::Take(dropped, folder, position, isCopied);
  });
}
