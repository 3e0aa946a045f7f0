#include <algorithm>
#include <QClipboard>
#include <QDropEvent>
#include <QGuiApplication>
#include <QMimeData>

#include "chrome/folder_view/folder_editor.h"
#include "chrome/folder_view/folder_kind.h"
#include "chrome/folder_view/folder_view.h"
#include "favorites/favorite_drag.h"

// What files hold, as rows below them.

QList<TFilePartPlace> TFolderView::SelectedParts() const {
  QList<TFilePartPlace> parts;
  if (m_kind.Parts() == nullptr) return parts;
  for (const QModelIndex &index : selectionModel()->selectedRows()) {
    if (m_model.IsPart(index)) parts.append(m_model.PartAt(index));
  }
  std::ranges::stable_sort(parts, [](const TFilePartPlace &a, const TFilePartPlace &b) {
    return a.file != b.file ? a.file < b.file : a.position < b.position;
  });
  return parts;
}

bool TFolderView::ArePartsSelected(bool ofOneFile) const {
  if (m_kind.Parts() == nullptr) return false;
  const QModelIndexList rows = selectionModel()->selectedRows();
  return !rows.isEmpty() && std::ranges::all_of(rows, [&](const QModelIndex &index) {
    return m_model.IsPart(index) && (!ofOneFile || index.parent() == rows.first().parent());
  });
}

void TFolderView::OpenParts(TOpenPlace place) {
  for (const TFilePartPlace &one : SelectedParts()) {
    m_kind.Parts()->Open(one.part, place);
    // One tab is for one page.
    if (place == TOpenPlace::BySetting) place = TOpenPlace::NewTab;
  }
}

void TFolderView::Do(const TFilePartsChange &change) {
  if (change.undo) m_editor.NoteUndo(change.undo);
  if (!change.error.isEmpty()) m_editor.Tell(change.error);
  QStringList paths;
  for (const QString &line : change.lines) paths.append(TFolderModel::PathOfPart(change.file, line));
  if (!paths.isEmpty()) Select(paths);
}

// By what the file holds now: of two presses in a row the second comes before the rows show the first.
void TFolderView::MovePartsBy(int step) {
  if (!ArePartsSelected(true)) return;
  const QList<TFilePartPlace> parts = SelectedParts();
  const QString file = parts.first().file;
  const QList<TFilePart> all = m_kind.Parts()->Reader()(file);
  const auto isMoved = [&](const TFilePart &part) {
    return std::ranges::any_of(parts, [&](const TFilePartPlace &one) { return one.part.line == part.line; });
  };
  const auto first = std::ranges::find_if(all, isMoved);
  if (first == all.end()) return;
  const auto last = std::find_if(all.rbegin(), all.rend(), isMoved).base();  // behind it
  if (step < 0 ? first == all.begin() : last == all.end()) return;
  const qsizetype before = step < 0 ? first - all.begin() - 1 : last - all.begin() + 1;
  Do(m_kind.Parts()->Move(
      parts, before < all.size() ? TFilePartPlace{file, int(before), all.at(before)} : TFilePartPlace{file}));
}

bool TFolderView::PasteIntoFile(const QMimeData &clip) {
  TFileParts *parts = m_kind.Parts();
  const QModelIndex current = currentIndex();
  if (parts == nullptr || m_model.At(current).isFolder || !current.isValid() || !parts->CanTake(clip)) return false;
  const bool isPart = m_model.IsPart(current);
  const QString file = m_model.At(isPart ? current.parent() : current).path;
  const TFilePartPlace before = isPart ? m_model.PartAt(current.siblingAtRow(current.row() + 1)) : TFilePartPlace();
  const bool isCut = parts->AreParts(clip) && FavoriteDrag::IsCut(clip);
  const TFilePartsChange change = parts->Take(clip, file, before, !isCut);
  // What was cut is there only once; what could not be moved can be pasted elsewhere.
  if (isCut && change.error.isEmpty()) QGuiApplication::clipboard()->clear();
  Do(change);
  return true;
}

// A file takes it on all of its row. Over its parts it goes between them.
TFolderView::TDrop TFolderView::PartsDropAt(const QPoint &place) const {
  const QModelIndex over = indexAt(place);
  if (!over.isValid() || m_model.At(over).isFolder) return {};
  const QRect row = visualRect(over);
  if (m_model.IsPart(over)) return {over.parent(), place.y() <= row.center().y() ? over.row() : over.row() + 1};
  const bool isAboveParts =
      isExpanded(over) && m_model.rowCount(over) > 0 && place.y() > row.bottom() - row.height() / 4;
  return {over, isAboveParts ? 0 : -1};
}

bool TFolderView::IsDropIntoFile(const TDrop &drop) const {
  return drop.folder.isValid() && !m_model.At(drop.folder).isFolder;
}

void TFolderView::DropIntoFile(const TDrop &drop, const QDropEvent &event) {
  TFileParts &parts = *m_kind.Parts();
  const TFilePartPlace before =
      drop.row < 0 ? TFilePartPlace() : m_model.PartAt(m_model.index(drop.row, 0, drop.folder));
  const bool isCopied = !parts.AreParts(*event.mimeData()) || event.modifiers().testFlag(Qt::ControlModifier);
  Do(parts.Take(*event.mimeData(), m_model.At(drop.folder).path, before, isCopied));
}
