#include "chrome/favorites/favorite_list.h"

#include <QDropEvent>
#include <QMimeData>
#include <QSet>

#include "chrome/favorites/favorite_drag.h"
#include "ui/shown_text.h"

namespace {

constexpr int PathRole = Qt::UserRole;
constexpr int FilledRole = Qt::UserRole + 1;

QString PathOf(const QTreeWidgetItem *node) {
  return node->data(0, PathRole).toString();
}

void TakeIfPaths(QDropEvent *event) {
  if (FavoriteDrag::HasPaths(*event->mimeData())) {
    event->acceptProposedAction();
  } else {
    event->ignore();
  }
}

// What comes from elsewhere stays where it is, whatever its owner proposes.
bool IsCopied(const QDropEvent &event) {
  if (!FavoriteDrag::AreFavorites(*event.mimeData())) return true;
  return event.proposedAction() == Qt::CopyAction && event.modifiers().testFlag(Qt::ControlModifier);
}

}  // namespace

TFavoriteList::TFavoriteList(QWidget *parent) : QListWidget(parent) {
  setSelectionMode(ExtendedSelection);
  setUniformItemSizes(true);
  setDragDropMode(DragDrop);
  setDefaultDropAction(Qt::MoveAction);
  setEditTriggers(EditKeyPressed);
  connect(this, &QListWidget::itemChanged, this, [this](QListWidgetItem *item) {
    const TFavorite favorite = m_shown.value(row(item));
    const QString caption = item->text().trimmed();
    if (caption == OneLine(favorite.caption)) return;
    // Not while the editor closes: the list is filled anew.
    QMetaObject::invokeMethod(
        this, [this, favorite, caption] { Q_EMIT Renamed(favorite, caption); }, Qt::QueuedConnection);
  });
}

void TFavoriteList::Show(const TFavorites &favorites, const QIcon &folder, const QIcon &page) {
  const QStringList selected = SelectedPaths();
  const QString current = Current().path;
  const QSignalBlocker quiet(this);
  clear();
  m_shown = favorites;
  for (const TFavorite &favorite : favorites) {
    auto *item = new QListWidgetItem(favorite.isFolder ? folder : page, OneLine(favorite.caption), this);
    item->setFlags(item->flags() | Qt::ItemIsEditable);
  }
  Select(selected);
  for (int i = 0; i < count(); ++i) {
    if (m_shown.at(i).path == current) setCurrentRow(i, QItemSelectionModel::NoUpdate);
  }
}

QStringList TFavoriteList::SelectedPaths() const {
  QStringList paths;
  for (int i = 0; i < count(); ++i) {
    if (item(i)->isSelected()) paths.append(m_shown.at(i).path);
  }
  return paths;
}

void TFavoriteList::Select(const QStringList &paths) {
  const QSet<QString> wanted(paths.begin(), paths.end());
  clearSelection();
  bool isFirst = true;
  for (int i = 0; i < count(); ++i) {
    if (!wanted.contains(m_shown.at(i).path)) continue;
    if (std::exchange(isFirst, false)) setCurrentRow(i, QItemSelectionModel::NoUpdate);
    item(i)->setSelected(true);
  }
}

TFavorite TFavoriteList::Current() const {
  return m_shown.value(currentRow());
}

QMimeData *TFavoriteList::mimeData(const QList<QListWidgetItem *> &) const {
  return FavoriteDrag::DataOf(SelectedPaths());
}

void TFavoriteList::dragEnterEvent(QDragEnterEvent *event) {
  TakeIfPaths(event);
}

void TFavoriteList::dragMoveEvent(QDragMoveEvent *event) {
  QListWidget::dragMoveEvent(event);  // scrolls
  TakeIfPaths(event);
}

void TFavoriteList::dropEvent(QDropEvent *event) {
  const QStringList paths = FavoriteDrag::PathsIn(*event->mimeData());
  const QModelIndex index = indexAt(event->position().toPoint());
  const TFavorite over = m_shown.value(index.isValid() ? index.row() : -1);
  const QRect place = visualRect(index);
  const bool isUpper = event->position().y() < place.center().y();
  const int position = !index.isValid() ? count() : isUpper ? index.row() : index.row() + 1;
  const bool isCopied = IsCopied(*event);
  // The list that it comes from takes nothing away: that is done here.
  event->setDropAction(Qt::CopyAction);
  event->accept();
  if (over.isFolder && !paths.contains(over.path)) {
    Q_EMIT Dropped(paths, over.path, -1, isCopied);
  } else {
    Q_EMIT Dropped(paths, QString(), position, isCopied);
  }
}

TFolderTree::TFolderTree(QWidget *parent) : QTreeWidget(parent) {
  setHeaderHidden(true);
  setUniformRowHeights(true);
  setAcceptDrops(true);
  connect(this, &QTreeWidget::itemExpanded, this, &TFolderTree::FillNode);
}

void TFolderTree::SetRoot(const QString &caption, const QString &path) {
  clear();
  AddNode(invisibleRootItem(), caption, path);
  topLevelItem(0)->setExpanded(true);
  setCurrentItem(topLevelItem(0));
}

void TFolderTree::AddNode(QTreeWidgetItem *parent, const QString &caption, const QString &path) {
  auto *node = new QTreeWidgetItem(parent, {OneLine(caption)});
  node->setData(0, PathRole, path);
  node->setIcon(0, style()->standardIcon(QStyle::SP_DirIcon));
  node->setChildIndicatorPolicy(QTreeWidgetItem::ShowIndicator);
}

void TFolderTree::FillNode(QTreeWidgetItem *node) {
  if (node->data(0, FilledRole).toBool()) return;
  node->setData(0, FilledRole, true);
  node->setChildIndicatorPolicy(QTreeWidgetItem::DontShowIndicatorWhenChildless);
  for (const TFavorite &favorite : FavoritesFolder::List(PathOf(node))) {
    if (favorite.isFolder) AddNode(node, favorite.caption, favorite.path);
  }
}

void TFolderTree::ShowFolder(const QString &path) {
  QTreeWidgetItem *node = topLevelItem(0);
  for (QTreeWidgetItem *next = node; next != nullptr;) {
    node = next;
    node->setExpanded(true);
    FillNode(node);
    next = nullptr;
    for (int i = 0; i < node->childCount() && next == nullptr; ++i) {
      const QString child = PathOf(node->child(i));
      if (path == child || path.startsWith(child + u'/')) next = node->child(i);
    }
  }
  setCurrentItem(node);
  scrollToItem(node);
}

void TFolderTree::Refresh() {
  const QString current = Current();
  QStringList open;
  for (QTreeWidgetItemIterator walk(this); *walk != nullptr; ++walk) {
    if ((*walk)->isExpanded()) open.append(PathOf(*walk));
  }
  const QSignalBlocker quiet(this);
  QTreeWidgetItem *root = topLevelItem(0);
  qDeleteAll(root->takeChildren());
  root->setData(0, FilledRole, false);
  for (const QString &path : open) ShowFolder(path);
  ShowFolder(current);
}

QString TFolderTree::Current() const {
  return currentItem() != nullptr ? PathOf(currentItem()) : QString();
}

void TFolderTree::dragEnterEvent(QDragEnterEvent *event) {
  TakeIfPaths(event);
}

void TFolderTree::dragMoveEvent(QDragMoveEvent *event) {
  TakeIfPaths(event);
}

void TFolderTree::dropEvent(QDropEvent *event) {
  const QTreeWidgetItem *node = itemAt(event->position().toPoint());
  if (node == nullptr) return;
  const bool isCopied = IsCopied(*event);
  event->setDropAction(Qt::CopyAction);
  event->accept();
  Q_EMIT Dropped(FavoriteDrag::PathsIn(*event->mimeData()), PathOf(node), -1, isCopied);
}
