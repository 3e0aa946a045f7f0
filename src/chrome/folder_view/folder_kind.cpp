#include "chrome/folder_view/folder_kind.h"

#include <QApplication>
#include <QStyle>

QIcon TFolderKind::FolderIcon() const {
  return QApplication::style()->standardIcon(QStyle::SP_DirIcon);
}

QIcon TFolderKind::FileIcon() const {
  return QApplication::style()->standardIcon(QStyle::SP_FileIcon);
}
