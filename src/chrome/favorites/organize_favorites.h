#pragma once

#include <QDialog>

#include "chrome/favorites/favorite_commands.h"
#include "chrome/favorites/favorite_kind.h"
#include "chrome/folder_view/folder_editor.h"

class TFolderView;
class TMessageLine;

// The window in which favorites are put in order: their folders, and what is in one of them. What is done here can be
// undone as long as the window is open; what is deleted goes to the desktop's trash.
class TfrmOrganizeFavorites final : public QDialog {
  Q_OBJECT

 public:
  // All must outlive the window, which deletes itself when it is closed.
  TfrmOrganizeFavorites(const TLanguage &language, TFavoriteLauncher &launcher, const TFavoriteIcons &icons,
                        const QString &root, QWidget *parent);

  // Shows that folder, or the nearest above it.
  void ShowFolder(const QString &path);
  // Shows what is on the disk now.
  void Refresh();

 Q_SIGNALS:
  // Something was done to the files.
  void Changed();

 private:
  void Equip(TFolderView &view);
  void ShowContents();
  void GoUp();

  TFavoriteCommands m_commands;
  TFavoriteKind m_kind;
  TFolderEditor m_editor;
  QString m_root;
  TFolderView *m_tree;
  TFolderView *m_list;
  TMessageLine *m_message;
};
