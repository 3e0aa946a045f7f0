#pragma once

#include <QDialog>
#include <QList>

#include "chrome/favorites/favorite_commands.h"
#include "favorites/favorites_edit.h"

class QAction;
class QToolBar;
class TFavoriteIcons;
class TFavoriteList;
class TFolderTree;

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
  using THandler = void (TfrmOrganizeFavorites::*)();

  void MakeActions();
  QAction *MakeAction(const QString &text, const char *name, const char *icon, const QList<QKeySequence> &keys,
                      THandler handler);
  void UpdateActions();
  void ShowContents();
  void Do(const TFavoritesChange &change);
  void Drop(const QStringList &paths, const QString &folder, int position, bool isCopied);
  void NewFolder();
  void Rename();
  void Delete();
  void Undo();
  void Cut();
  void Copy();
  void Paste();
  void SortByName();
  void ShowProperties();
  void OpenCurrent();
  void GoUp();
  void ShowMenu(const QPoint &place);
  [[nodiscard]] QString Folder() const;

  const TLanguage &m_language;
  TFavoriteLauncher &m_launcher;
  const TFavoriteIcons &m_icons;
  TFavoriteCommands m_commands;
  QString m_root;
  QToolBar *m_bar;
  TFolderTree *m_tree;
  TFavoriteList *m_list;
  QAction *m_open = nullptr;
  QAction *m_newFolder = nullptr;
  QAction *m_rename = nullptr;
  QAction *m_delete = nullptr;
  QAction *m_undo = nullptr;
  QAction *m_cut = nullptr;
  QAction *m_copy = nullptr;
  QAction *m_paste = nullptr;
  QAction *m_sort = nullptr;
  QAction *m_properties = nullptr;
  bool m_isStale = false;          // something has changed while a name was being typed
  QList<TFavoritesChange> m_done;  // the last one at the end
};
