#include "chrome/folder_view/folder_editor.h"

bool TFolderEditor::Take(const TFavoritesChange &change) {
  Note(change);
  if (!change.IsGood()) Q_EMIT Failed(change.error);
  return change.IsGood();
}

void TFolderEditor::Note(const TFavoritesChange &change) {
  if (!change.IsEmpty()) m_done.append(change);
  Q_EMIT Done(change);
}

void TFolderEditor::Undo() {
  if (m_done.isEmpty()) return;
  TFavoritesChange left;
  const TFavoritesChange back = FavoritesEdit::Undo(m_done.takeLast(), &left);
  if (!left.IsEmpty()) m_done.append(left);
  Q_EMIT Done(back);
  if (!back.IsGood()) Q_EMIT Failed(back.error);
}
