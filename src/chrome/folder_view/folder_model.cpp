#include "chrome/folder_view/folder_model.h"

#include <algorithm>
#include <QCryptographicHash>
#include <QElapsedTimer>
#include <QHash>
#include <QIcon>

#include "chrome/folder_view/folder_kind.h"
#include "platform/native_path.h"
#include "ui/shown_text.h"

struct TFolderModel::TNode {
  enum class TState { Unread, BeingRead, Read };

  QString name;  // on the disk; of the root its full path
  QString caption;
  bool isFolder = false;
  TNode *parent = nullptr;
  int row = 0;
  std::unique_ptr<TFilePart> part{};
  // Of folders, and of files with parts.
  TState state = TState::Unread;
  quint64 stamp = TFolderReader::NoStamp;
  QElapsedTimer readAt{};
  std::vector<std::unique_ptr<TNode>> children{};
  QHash<QString, TNode *> byName{};
  // Of files that have been painted.
  bool isTargetWanted = false;
  QString target{};
  QIcon icon{};
  int iconVersion = -1;

  void Number() {
    for (size_t i = 0; i < children.size(); ++i) children[i]->row = int(i);
  }
};

namespace {

// Milliseconds. Disks tell times roughly: of two changes in a row the second may leave the stamp as it was. So the
// stamp of a look at a folder counts only for a look that comes so much later.
constexpr qint64 StampSettles = 1000;

QString NameOf(const QString &path) {
  return path.mid(path.lastIndexOf(u'/') + 1);
}

// Of any line a short name without "/".
QString NameOfLine(const QString &line) {
  return QString::fromLatin1(QCryptographicHash::hash(line.toUtf8(), QCryptographicHash::Md5).toHex());
}

}  // namespace

TFolderModel::TFolderModel(const TFolderKind &kind, TShow show, QObject *parent)
    : QAbstractItemModel(parent), m_kind(kind), m_show(show) {
  connect(&m_reader, &TFolderReader::FolderRead, this, &TFolderModel::OnFolderRead);
  connect(&m_reader, &TFolderReader::PartsRead, this, &TFolderModel::OnPartsRead);
  connect(&m_reader, &TFolderReader::Unchanged, this, &TFolderModel::Finish);
  connect(&m_reader, &TFolderReader::TargetRead, this, &TFolderModel::OnTargetRead);
}

TFolderModel::~TFolderModel() = default;

void TFolderModel::SetRoot(const QString &path, const QString &caption) {
  beginResetModel();
  m_root = std::make_unique<TNode>(TNode{.name = path, .caption = caption, .isFolder = true});
  endResetModel();
  Want(*m_root);
}

QString TFolderModel::Root() const {
  return m_root ? m_root->name : QString();
}

QModelIndex TFolderModel::RootIndex() const {
  return m_root ? createIndex(0, 0, m_root.get()) : QModelIndex();
}

TFolderModel::TNode *TFolderModel::NodeAt(const QModelIndex &index) const {
  return index.isValid() ? static_cast<TNode *>(index.internalPointer()) : nullptr;
}

QModelIndex TFolderModel::IndexOf(const TNode &node) const {
  return createIndex(node.row, 0, &node);
}

QString TFolderModel::PathOf(const TNode &node) const {
  return node.parent != nullptr ? PathOf(*node.parent) + u'/' + node.name : node.name;
}

TFavorite TFolderModel::At(const QModelIndex &index) const {
  const TNode *node = NodeAt(index);
  return node != nullptr ? TFavorite{node->caption, PathOf(*node), node->isFolder} : TFavorite();
}

bool TFolderModel::IsPart(const TNode &node) {
  return node.part != nullptr;
}

bool TFolderModel::Holds(const TNode &node) const {
  return node.isFolder || (!IsPart(node) && m_kind.Parts() != nullptr);
}

bool TFolderModel::IsPart(const QModelIndex &index) const {
  const TNode *node = NodeAt(index);
  return node != nullptr && IsPart(*node);
}

TFilePartPlace TFolderModel::PartAt(const QModelIndex &index) const {
  if (!IsPart(index)) return {};
  const TNode &node = *NodeAt(index);
  return {PathOf(*node.parent), node.row, *node.part};
}

QString TFolderModel::PathOfPart(const QString &file, const QString &line) {
  return file + u'/' + NameOfLine(line);
}

QModelIndex TFolderModel::Nearest(const QString &path) const {
  if (!m_root || (path != m_root->name && !path.startsWith(m_root->name + u'/'))) return {};
  const TNode *node = m_root.get();
  const QStringList names = path.mid(m_root->name.size()).split(u'/', Qt::SkipEmptyParts);
  for (const QString &name : names) {
    const TNode *child = node->byName.value(name);
    if (child == nullptr) break;
    node = child;
  }
  return IndexOf(*node);
}

TFolderModel::TNode *TFolderModel::Find(const QString &path) const {
  TNode *node = NodeAt(Nearest(path));
  return node != nullptr && PathOf(*node) == path ? node : nullptr;
}

// ---- reading ----

void TFolderModel::Want(TNode &folder) {
  if (folder.state == TNode::TState::Unread) folder.state = TNode::TState::BeingRead;
  ++m_reading;
  const bool isSettled = folder.readAt.isValid() && folder.readAt.hasExpired(StampSettles);
  const quint64 known = isSettled ? folder.stamp : TFolderReader::NoStamp;
  if (folder.isFolder) {
    m_reader.Read(PathOf(folder), known, m_kind.Endings(), m_show == TShow::FoldersOnly);
  } else {
    m_reader.ReadParts(PathOf(folder), known, m_kind.Parts()->Reader());
  }
}

void TFolderModel::WantAgain(TNode &folder) {
  if (folder.state == TNode::TState::Unread) return;
  Want(folder);
  for (const auto &child : folder.children) {
    if (Holds(*child)) {
      WantAgain(*child);
    } else {
      child->isTargetWanted = false;  // what is in a file may change while its folder stays as it is
    }
  }
}

void TFolderModel::Refresh() {
  // What is under way may have looked before the change.
  if (m_reading > 0) {
    m_readsAgain = true;
  } else if (m_root) {
    WantAgain(*m_root);
  }
}

void TFolderModel::Finish() {
  --m_reading;
  if (m_reading == 0 && std::exchange(m_readsAgain, false)) Refresh();
  Q_EMIT Read();
}

void TFolderModel::OnFolderRead(const QString &path, const TFavorites &favorites, quint64 stamp) {
  TNode *folder = Find(path);
  // It may have gone meanwhile, or be a file now.
  if (folder != nullptr && folder->isFolder) {
    folder->stamp = stamp;
    folder->readAt.start();
    Update(*folder, favorites);
  }
  Finish();
}

void TFolderModel::OnPartsRead(const QString &path, const QList<TFilePart> &parts, quint64 stamp) {
  TNode *file = Find(path);
  if (file != nullptr && !file->isFolder && Holds(*file)) {
    file->stamp = stamp;
    file->readAt.start();
    TFavorites rows;
    rows.reserve(parts.size());
    QHash<QString, int> times;  // that a line was seen
    for (const TFilePart &part : parts) {
      QString row = PathOfPart(path, part.line);
      if (const int before = times[part.line]++; before > 0) row += u'-' + QString::number(before);
      rows.append({part.caption, row, false});
    }
    Update(*file, rows, parts);
  }
  Finish();
}

void TFolderModel::OnTargetRead(const QString &path, const QString &target) {
  TNode *node = Find(path);
  if (node == nullptr || node->target == target) return;
  node->target = target;
  node->iconVersion = -1;
  const QModelIndex index = IndexOf(*node);
  Q_EMIT dataChanged(index, index, {Qt::DecorationRole, Qt::ToolTipRole});
}

void TFolderModel::Update(TNode &folder, const TFavorites &favorites, const QList<TFilePart> &parts) {
  const bool isFirst = std::exchange(folder.state, TNode::TState::Read) != TNode::TState::Read;
  QHash<QString, int> places;
  places.reserve(favorites.size());
  for (qsizetype i = 0; i < favorites.size(); ++i) places.insert(NameOf(favorites.at(i).path), int(i));
  const bool hadChildren = isFirst || !folder.children.empty();
  Q_EMIT AboutToChange();
  RemoveMissing(folder, places, favorites);
  Arrange(folder, places);
  AddNew(folder, favorites, parts);
  if (hadChildren == folder.children.empty()) {
    // Views ask only then whether there is something to open.
    Q_EMIT layoutAboutToBeChanged({QPersistentModelIndex(IndexOf(folder))});
    Q_EMIT layoutChanged({QPersistentModelIndex(IndexOf(folder))});
  }
  Q_EMIT Changed();
}

void TFolderModel::RemoveMissing(TNode &folder, const QHash<QString, int> &places, const TFavorites &favorites) {
  auto &children = folder.children;
  const auto isThere = [&](int row) {
    const TNode &child = *children[size_t(row)];
    const int place = places.value(child.name, -1);
    return place >= 0 && favorites.at(place).isFolder == child.isFolder;
  };
  for (int last = int(children.size()) - 1; last >= 0; --last) {
    if (isThere(last)) continue;
    int first = last;
    while (first > 0 && !isThere(first - 1)) --first;
    beginRemoveRows(IndexOf(folder), first, last);
    for (int row = first; row <= last; ++row) folder.byName.remove(children[size_t(row)]->name);
    children.erase(children.begin() + first, children.begin() + last + 1);
    folder.Number();
    endRemoveRows();
    last = first;
  }
}

void TFolderModel::Arrange(TNode &folder, const QHash<QString, int> &places) {
  const auto comesFirst = [&places](const auto &a, const auto &b) {
    return places.value(a->name) < places.value(b->name);
  };
  if (std::ranges::is_sorted(folder.children, comesFirst)) return;
  const QList<QPersistentModelIndex> parents{QPersistentModelIndex(IndexOf(folder))};
  Q_EMIT layoutAboutToBeChanged(parents);
  std::ranges::sort(folder.children, comesFirst);
  folder.Number();
  const QModelIndexList before = persistentIndexList();
  QModelIndexList after;
  after.reserve(before.size());
  for (const QModelIndex &index : before) after.append(IndexOf(*NodeAt(index)));
  changePersistentIndexList(before, after);
  Q_EMIT layoutChanged(parents);
}

// What is there already stands in the new order, so each row is either the next that was there or new.
void TFolderModel::AddNew(TNode &folder, const TFavorites &favorites, const QList<TFilePart> &parts) {
  auto &children = folder.children;
  for (qsizetype first = 0; first < favorites.size(); ++first) {
    const QString next = size_t(first) < children.size() ? children[size_t(first)]->name : QString();
    std::vector<std::unique_ptr<TNode>> added;
    for (qsizetype i = first; i < favorites.size() && NameOf(favorites.at(i).path) != next; ++i) {
      const TFavorite &one = favorites.at(i);
      added.push_back(std::make_unique<TNode>(
          TNode{.name = NameOf(one.path), .caption = one.caption, .isFolder = one.isFolder, .parent = &folder}));
      if (!folder.isFolder) added.back()->part = std::make_unique<TFilePart>(parts.at(i));
    }
    if (added.empty()) continue;
    for (const auto &node : added) folder.byName.insert(node->name, node.get());
    const int last = int(first) + int(added.size()) - 1;
    beginInsertRows(IndexOf(folder), int(first), last);
    children.insert(children.begin() + first, std::make_move_iterator(added.begin()),
                    std::make_move_iterator(added.end()));
    folder.Number();
    endInsertRows();
    first = last;
  }
}

void TFolderModel::Rename(const QString &from, const QString &to) {
  TNode *node = Find(from);
  if (node == nullptr || node->parent == nullptr) return;
  // Another may have that name already, as long as the folder is not read again.
  node->parent->byName.remove(node->name);
  node->name = NameOf(to);
  node->parent->byName.insert(node->name, node);
  node->caption = FavoritesFolder::CaptionOf(to, node->isFolder);
  node->isTargetWanted = false;
  const QModelIndex index = IndexOf(*node);
  Q_EMIT dataChanged(index, index);
  // Answers that are still to come name the old path.
  if (m_reading > 0 && Holds(*node)) WantAgain(*node);
}

void TFolderModel::ForgetTarget(const QString &path) {
  TNode *node = Find(path);
  if (node == nullptr) return;
  node->isTargetWanted = false;
  const QModelIndex index = IndexOf(*node);
  Q_EMIT dataChanged(index, index, {Qt::DecorationRole});
}

// ---- what views ask ----

QModelIndex TFolderModel::index(int row, int column, const QModelIndex &parent) const {
  if (column != 0 || row < 0) return {};
  if (!parent.isValid()) return row == 0 ? RootIndex() : QModelIndex();
  const TNode *folder = NodeAt(parent);
  return size_t(row) < folder->children.size() ? createIndex(row, 0, folder->children[size_t(row)].get())
                                               : QModelIndex();
}

QModelIndex TFolderModel::parent(const QModelIndex &child) const {
  const TNode *node = NodeAt(child);
  return node != nullptr && node->parent != nullptr ? IndexOf(*node->parent) : QModelIndex();
}

int TFolderModel::rowCount(const QModelIndex &parent) const {
  if (!parent.isValid()) return m_root ? 1 : 0;
  return int(NodeAt(parent)->children.size());
}

int TFolderModel::columnCount(const QModelIndex &) const {
  return 1;
}

bool TFolderModel::hasChildren(const QModelIndex &parent) const {
  const TNode *node = NodeAt(parent);
  if (node == nullptr) return m_root != nullptr;
  // Before it is read it is one that may be opened.
  return Holds(*node) && (node->state != TNode::TState::Read || !node->children.empty());
}

bool TFolderModel::canFetchMore(const QModelIndex &parent) const {
  const TNode *node = NodeAt(parent);
  return node != nullptr && Holds(*node) && node->state == TNode::TState::Unread;
}

void TFolderModel::fetchMore(const QModelIndex &parent) {
  if (canFetchMore(parent)) Want(*NodeAt(parent));
}

Qt::ItemFlags TFolderModel::flags(const QModelIndex &index) const {
  const TNode *node = NodeAt(index);
  if (node == nullptr) return Qt::ItemIsDropEnabled;
  Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
  if (node->parent != nullptr) flags |= Qt::ItemIsDragEnabled;
  if (node->parent != nullptr && !IsPart(*node)) flags |= Qt::ItemIsEditable;
  flags |= Holds(*node) ? Qt::ItemIsDropEnabled : Qt::ItemNeverHasChildren;
  return flags;
}

QVariant TFolderModel::data(const QModelIndex &index, int role) const {
  TNode *node = NodeAt(index);
  if (node == nullptr) return {};
  if (IsPart(*node)) return DataOf(*node->part, role);
  switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
      return OneLine(node->caption);
    case Qt::DecorationRole:
      return IconOf(*node);
    case Qt::ToolTipRole:
      if (node->target.isEmpty()) return {};
      return PlainTip(node->caption + u'\n' + NativePath::Shown(node->target)).replace(u'\n', QLatin1String("<br>"));
    default:
      return {};
  }
}

QVariant TFolderModel::DataOf(const TFilePart &part, int role) const {
  const TFileParts &parts = *m_kind.Parts();
  const QString note = parts.NoteOf(part);
  switch (role) {
    case Qt::DisplayRole:
      return OneLine(part.caption);
    case Qt::DecorationRole:
      return parts.IconOf(part);
    case Qt::AccessibleTextRole:
      return note.isEmpty() ? OneLine(part.caption) : OneLine(part.caption) + QLatin1String(", ") + note;
    case Qt::ToolTipRole: {
      const QString hint = NativePath::Shown(part.address) + (note.isEmpty() ? QString() : u'\n' + note);
      return PlainTip(hint).replace(u'\n', QLatin1String("<br>"));
    }
    default:
      return {};
  }
}

// Views ask for pictures when they paint a row, so files are read for no others.
QIcon TFolderModel::IconOf(TNode &node) const {
  if (node.isFolder) return m_kind.FolderIcon();
  if (!Holds(node) && !std::exchange(node.isTargetWanted, true)) {
    auto *self = const_cast<TFolderModel *>(this);
    self->m_reader.ReadTarget({node.caption, PathOf(node), false});
  }
  if (node.iconVersion != m_kind.IconVersion()) {
    node.iconVersion = m_kind.IconVersion();
    node.icon = node.target.isEmpty() ? QIcon() : m_kind.IconOf(node.target);
    if (node.icon.isNull()) node.icon = m_kind.FileIcon();
  }
  return node.icon;
}

bool TFolderModel::setData(const QModelIndex &index, const QVariant &value, int role) {
  const TFavorite favorite = At(index);
  const QString caption = value.toString().trimmed();
  // The blanks at the edges of a name that somebody else has given it are no change.
  if (role != Qt::EditRole || caption.isEmpty() || caption == OneLine(favorite.caption).trimmed()) return false;
  // Not while the editor closes: rows may come and go.
  QMetaObject::invokeMethod(
      this, [this, favorite, caption] { Q_EMIT Renamed(favorite, caption); }, Qt::QueuedConnection);
  return true;
}
