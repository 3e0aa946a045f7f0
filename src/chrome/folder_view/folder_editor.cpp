#include "chrome/folder_view/folder_editor.h"

#include <memory>

TFolderEditor::TFolderEditor(QObject *parent) : QObject(parent) {
  connect(&m_work, &TFileWork::BusyChanged, this, &TFolderEditor::BusyChanged);
}

void TFolderEditor::Do(const TFileWork::TWork &work, const QObject *by, const TFileWork::TThen &then) {
  m_work.Do(work, [this, by, then](const TFavoritesChange &change) {
    if (then) then(change);
    Take(change, by);
    if (!change.IsGood()) Q_EMIT Failed(change.error);
  });
}

void TFolderEditor::Take(const TFavoritesChange &change, const QObject *by) {
  if (!change.IsEmpty()) m_done.append({change});
  Q_EMIT Done(change, by);
}

void TFolderEditor::NoteUndo(const std::function<QString()> &undo) {
  m_done.append({.undo = undo});
  Q_EMIT Done({}, nullptr);
}

void TFolderEditor::Undo(const QObject *by) {
  if (!CanUndo()) return;
  const TDone last = m_done.takeLast();
  const auto left = std::make_shared<TFavoritesChange>();
  const auto work = [last, left] {
    return last.undo ? TFavoritesChange{.error = last.undo()} : FavoritesEdit::Undo(last.change, left.get());
  };
  m_work.Do(work, [=, this](const TFavoritesChange &back) { EndUndo(last, back, *left, by); });
}

void TFolderEditor::EndUndo(const TDone &what, const TFavoritesChange &back, const TFavoritesChange &left,
                            const QObject *by) {
  // For another try.
  if (what.undo && !back.IsGood()) m_done.append(what);
  if (!left.IsEmpty()) m_done.append({left});
  Q_EMIT Done(back, by);
  if (!back.IsGood()) Q_EMIT Failed(back.error);
}
