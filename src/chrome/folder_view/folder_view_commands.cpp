#include <algorithm>
#include <memory>
#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QSet>
#include <utility>

#include "chrome/folder_view/folder_editor.h"
#include "chrome/folder_view/folder_kind.h"
#include "chrome/folder_view/folder_view.h"
#include "config/language.h"
#include "favorites/favorite_drag.h"
#include "favorites/shortcut_file.h"

namespace {

QString FolderOf(const QString &path) {
  return path.left(path.lastIndexOf(u'/'));
}

// Moves the selected up or down past one that is shown. By what is on the disk: of two presses in a row the second
// comes before the rows show the first.
TFavoritesChange MoveIn(const QString &folder, const QSet<QString> &selected, const QSet<QString> &shown, int step) {
  const TFavorites all = FavoritesFolder::List(folder);
  QStringList moved;
  int before = -1;  // the last that is shown above them
  int after = -1;   // the first below
  for (int i = 0; i < all.size(); ++i) {
    const QString &path = all.at(i).path;
    if (selected.contains(path)) {
      moved.append(path);
      after = -1;
    } else if (shown.contains(path)) {
      if (moved.isEmpty()) before = i;
      if (after < 0) after = i;
    }
  }
  if (moved.isEmpty() || (step < 0 ? before : after) < 0) return {};
  return FavoritesEdit::Move(moved, folder, step < 0 ? before : after + 1);
}

}  // namespace

void TFolderView::Run(TFolderAction action) {
  switch (action) {
    case TFolderAction::Open:
      return Open(TOpenPlace::BySetting);
    case TFolderAction::OpenAll:
      return m_kind.OpenAll(Sole().path);
    case TFolderAction::OpenInNewTab:
      return Open(TOpenPlace::NewTab);
    case TFolderAction::OpenInBackground:
      return Open(TOpenPlace::BackgroundTab);
    case TFolderAction::Cut:
      return Cut();
    case TFolderAction::Copy:
      return Copy();
    case TFolderAction::Paste:
      return Paste();
    case TFolderAction::Rename:
      return Rename();
    case TFolderAction::Delete:
      return Delete();
    case TFolderAction::NewFolder:
      return NewFolder();
    case TFolderAction::Undo:
      return m_editor.Undo(this);
    case TFolderAction::SortByName:
      return Do([folder = Folder()] { return FavoritesEdit::Order(folder, std::nullopt); });
    case TFolderAction::MoveUp:
      return ArePartsSelected() ? MovePartsBy(-1) : MoveBy(-1);
    case TFolderAction::MoveDown:
      return ArePartsSelected() ? MovePartsBy(1) : MoveBy(1);
    case TFolderAction::CopyAddress:
      return CopyAddress();
    case TFolderAction::Properties:
      if (const TFavorite one = Sole(); !one.path.isEmpty()) Q_EMIT PropertiesWanted(one);
      return;
    case TFolderAction::Count:
      return;
  }
}

void TFolderView::Do(const TFileWork::TWork &change, const TFileWork::TThen &then) {
  const QPointer<TFolderView> self(this);
  m_editor.Do(change, this, [self, then](const TFavoritesChange &done) {
    if (self && then) then(done);
  });
}

void TFolderView::DoWith(const DroppedFavorites::TDropped &dropped, const TFileWork::TWork &change,
                         const TFileWork::TThen &then) {
  const auto isRefused = std::make_shared<bool>(false);
  const auto work = [dropped, change, isRefused] {
    *isRefused = DroppedFavorites::IsTooMuch(dropped);
    return *isRefused ? TFavoritesChange() : change();
  };
  Do(work, [this, isRefused, then](const TFavoritesChange &done) {
    if (*isRefused) {
      Q_EMIT Told(m_language.Text("FOLDER_VIEW", "TooMuch"));
    } else if (then) {
      then(done);
    }
  });
}

void TFolderView::OnDone(const TFavoritesChange &change, const QObject *by) {
  using enum TFavoritesChange::TStep::TKind;
  for (const TFavoritesChange::TStep &step : change.steps) {
    if (step.kind == Moved && FolderOf(step.from) == FolderOf(step.to)) m_model.Rename(step.from, step.to);
    if (step.kind == TFavoritesChange::TStep::TKind::Changed) m_model.ForgetTarget(step.from);
  }
  m_model.Refresh();
  if (by == this && !change.paths.isEmpty()) Select(change.paths);
  UpdateActions();
}

void TFolderView::Open(TOpenPlace place) {
  if (ArePartsSelected()) return OpenParts(place);
  const TFavorites selected = Selected();
  const bool isFolder = selected.size() == 1 && selected.first().isFolder;
  if (isFolder && m_look == TLook::List) {
    Q_EMIT FolderWanted(selected.first().path);
  } else if (isFolder) {
    const QModelIndex index = m_model.Nearest(selected.first().path);
    setExpanded(index, !isExpanded(index));
  } else if (!selected.isEmpty()) {
    for (const TFavorite &favorite : selected) {
      // Nothing runs without having been chosen by itself.
      if (selected.size() > 1 && ShortcutFile::IsScript(FavoritesFolder::Target(favorite))) continue;
      m_kind.Open(favorite, place);
      // One tab is for one page.
      if (place == TOpenPlace::BySetting) place = TOpenPlace::NewTab;
    }
  }
}

QStringList TFolderView::SelectedPaths() const {
  QStringList paths;
  for (const TFavorite &favorite : Selected()) paths.append(favorite.path);
  return paths;
}

void TFolderView::Cut() {
  QMimeData *data =
      ArePartsSelected() ? m_kind.Parts()->DataOf(SelectedParts()) : FavoriteDrag::DataOf(SelectedPaths());
  FavoriteDrag::SetCut(*data);
  QGuiApplication::clipboard()->setMimeData(data);
}

void TFolderView::Copy() {
  QGuiApplication::clipboard()->setMimeData(ArePartsSelected() ? m_kind.Parts()->DataOf(SelectedParts())
                                                               : FavoriteDrag::DataOf(SelectedPaths()));
}

void TFolderView::Paste() {
  const QMimeData *clip = QGuiApplication::clipboard()->mimeData();
  if (clip == nullptr || PasteIntoFile(*clip) || !m_kind.CanTake(*clip)) return;
  const QStringList paths = FavoriteDrag::PathsIn(*clip);
  const bool isCut = FavoriteDrag::IsCut(*clip);
  if (paths.isEmpty()) return;
  const auto change = [isCut, paths, folder = Folder()] {
    return isCut ? FavoritesEdit::Move(paths, folder) : FavoritesEdit::Copy(paths, folder);
  };
  DoWith(DroppedFavorites::In(*clip), change, [isCut, paths](const TFavoritesChange &done) {
    // What was cut is there only once; what could not be moved can be pasted elsewhere.
    const QMimeData *now = QGuiApplication::clipboard()->mimeData();
    const bool isStillThere = now != nullptr && FavoriteDrag::IsCut(*now) && FavoriteDrag::PathsIn(*now) == paths;
    if (isCut && done.IsGood() && isStillThere) QGuiApplication::clipboard()->clear();
  });
}

void TFolderView::Rename() {
  const TFavorite one = Sole();
  if (one.path.isEmpty()) return;
  if (!m_kind.IsRenamedInPlace(one)) {
    Q_EMIT RenameWanted(one);
    return;
  }
  setFocus();
  const QModelIndex index = m_model.Nearest(one.path);
  selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
  edit(index);
}

void TFolderView::Delete() {
  const QStringList paths = SelectedPaths();
  if (const auto parts = SelectedParts(); !parts.isEmpty()) Do(m_kind.Parts()->Remove(parts));
  if (!paths.isEmpty()) Do([paths] { return FavoritesEdit::Trash(paths); });
}

void TFolderView::NewFolder() {
  const QString name = m_language.Text("HalvexGroups", "NewFolder");
  Do([folder = Folder(), name] { return FavoritesEdit::AddFolder(folder, name); },
     [this](const TFavoritesChange &done) { m_edited = done.paths.value(0); });
}

QModelIndex TFolderView::EdgeOfSelected(bool isLast) const {
  QModelIndex edge;
  for (const QModelIndex &index : selectionModel()->selectedRows()) {
    if (edge.isValid() && index.parent() != edge.parent()) return {};
    if (!edge.isValid() || (isLast ? index.row() > edge.row() : index.row() < edge.row())) edge = index;
  }
  return edge == m_model.RootIndex() ? QModelIndex() : edge;
}

bool TFolderView::CanMoveBy(int step) const {
  const QModelIndex edge = EdgeOfSelected(step > 0);
  return edge.isValid() && edge.sibling(edge.row() + step, 0).isValid();
}

void TFolderView::MoveBy(int step) {
  const QModelIndex parent = EdgeOfSelected(step > 0).parent();
  QSet<QString> shown;
  for (int row = 0; row < m_model.rowCount(parent); ++row) shown.insert(m_model.At(m_model.index(row, 0, parent)).path);
  const QStringList paths = SelectedPaths();
  Do([folder = m_model.At(parent).path, selected = QSet<QString>(paths.begin(), paths.end()), shown, step] {
    return MoveIn(folder, selected, shown, step);
  });
}
void TFolderView::CopyAddress() {
  QStringList addresses;
  for (const TFilePartPlace &one : SelectedParts()) addresses.append(one.part.address);
  for (const TFavorite &favorite : Selected()) addresses.append(FavoritesFolder::Target(favorite));
  QGuiApplication::clipboard()->setText(addresses.join(u'\n'));
}
