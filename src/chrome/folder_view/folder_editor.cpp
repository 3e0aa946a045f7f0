#include "chrome/folder_view/folder_editor.h"

bool TFolderEditor::Take(const TFavoritesChange &change) {
  if (!change.IsEmpty()) m_done.append(change);
  Tell(change);
  return change.IsGood();
}

void TFolderEditor::Undo() {
  if (m_done.isEmpty()) return;
  TFavoritesChange left;
  const TFavoritesChange back = FavoritesEdit::Undo(m_done.takeLast(), &left);
  if (!left.IsEmpty()) m_done.append(left);
  Tell(back);
}

void TFolderEditor::Tell(const TFavoritesChange &change) {
  Q_EMIT Done(change);
  if (!change.IsGood()) Q_EMIT Failed(change.error);
}
