#include "chrome/folder_view/folder_kind.h"

#include <QApplication>
#include <QStyle>

#include "chrome/folder_view/dropped_favorites.h"

QIcon TFolderKind::FolderIcon() const {
  if (m_folderIcon.isNull()) m_folderIcon = QApplication::style()->standardIcon(QStyle::SP_DirIcon);
  return m_folderIcon;
}

QIcon TFolderKind::FileIcon() const {
  if (m_fileIcon.isNull()) m_fileIcon = QApplication::style()->standardIcon(QStyle::SP_FileIcon);
  return m_fileIcon;
}

bool TFolderKind::CanTake(const QMimeData &data) const {
  return DroppedFavorites::CanTake(data);
}
