#include <algorithm>
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
      m_isActing = true;
      m_editor.Undo();
      m_isActing = false;
      return;
    case TFolderAction::SortByName:
      return Do(FavoritesEdit::Order(Folder(), std::nullopt));
    case TFolderAction::MoveUp:
      return MoveBy(-1);
    case TFolderAction::MoveDown:
      return MoveBy(1);
    case TFolderAction::CopyAddress:
      return CopyAddress();
    case TFolderAction::Properties:
      if (const TFavorite one = Sole(); !one.path.isEmpty()) Q_EMIT PropertiesWanted(one);
      return;
    case TFolderAction::Count:
      return;
  }
}

void TFolderView::Do(const TFavoritesChange &change) {
  m_isActing = true;
  (void)m_editor.Take(change);
  m_isActing = false;
}

void TFolderView::OnDone(const TFavoritesChange &change) {
  using enum TFavoritesChange::TStep::TKind;
  for (const TFavoritesChange::TStep &step : change.steps) {
    if (step.kind == Moved && FolderOf(step.from) == FolderOf(step.to)) m_model.Rename(step.from, step.to);
    if (step.kind == TFavoritesChange::TStep::TKind::Changed) m_model.ForgetTarget(step.from);
  }
  m_model.Refresh();
  if (m_isActing && !change.paths.isEmpty()) Select(change.paths);
  UpdateActions();
}

void TFolderView::Open(TOpenPlace place) {
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
  QGuiApplication::clipboard()->setMimeData(FavoriteDrag::DataOf(SelectedPaths(), true));
}

void TFolderView::Copy() {
  QGuiApplication::clipboard()->setMimeData(FavoriteDrag::DataOf(SelectedPaths()));
}

void TFolderView::Paste() {
  const QMimeData *clip = QGuiApplication::clipboard()->mimeData();
  if (clip == nullptr) return;
  const QStringList paths = FavoriteDrag::PathsIn(*clip);
  const bool isCut = FavoriteDrag::IsCut(*clip);
  if (paths.isEmpty() || IsRefused(*clip, paths)) return;
  const TFavoritesChange change = isCut ? FavoritesEdit::Move(paths, Folder()) : FavoritesEdit::Copy(paths, Folder());
  // What was cut is there only once; what could not be moved can be pasted elsewhere.
  if (isCut && change.IsGood()) QGuiApplication::clipboard()->clear();
  Do(change);
}

bool TFolderView::IsRefused(const QMimeData &data, const QStringList &paths) {
  if (FavoriteDrag::AreFavorites(data) || !FavoritesEdit::IsTooMuch(paths)) return false;
  Q_EMIT Told(m_language.Text("FOLDER_VIEW", "TooMuch"));
  return true;
}

void TFolderView::Rename() {
  const TFavorite one = Sole();
  if (one.path.isEmpty()) return;
  setFocus();
  const QModelIndex index = m_model.Nearest(one.path);
  selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
  edit(index);
}

void TFolderView::Delete() {
  Do(FavoritesEdit::Trash(SelectedPaths()));
}

void TFolderView::NewFolder() {
  const TFavoritesChange change = FavoritesEdit::AddFolder(Folder(), m_language.Text("HalvexGroups", "NewFolder"));
  m_edited = change.paths.value(0);
  Do(change);
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

// By what is on the disk: of two presses in a row the second comes before the rows show the first.
void TFolderView::MoveBy(int step) {
  const QString folder = m_model.At(EdgeOfSelected(step > 0).parent()).path;
  const TFavorites all = FavoritesFolder::List(folder);
  const QStringList paths = SelectedPaths();
  const QSet<QString> selected(paths.begin(), paths.end());
  QStringList moved;
  int before = -1;  // the last that is shown above them
  int after = -1;   // the first below
  for (int i = 0; i < all.size(); ++i) {
    const QString &path = all.at(i).path;
    if (selected.contains(path)) {
      moved.append(path);
      after = -1;
    } else if (m_model.At(m_model.Nearest(path)).path == path) {
      if (moved.isEmpty()) before = i;
      if (after < 0) after = i;
    }
  }
  if (moved.isEmpty() || (step < 0 ? before : after) < 0) return;
  Do(FavoritesEdit::Move(moved, folder, step < 0 ? before : after + 1));
}

void TFolderView::CopyAddress() {
  QStringList addresses;
  for (const TFavorite &favorite : Selected()) addresses.append(FavoritesFolder::Target(favorite));
  QGuiApplication::clipboard()->setText(addresses.join(u'\n'));
}
