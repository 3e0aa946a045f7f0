#pragma once

#include <QFileSystemWatcher>
#include <QSet>
#include <QWidget>

#include "chrome/folder_view/folder_editor.h"
#include "chrome/side_bar/halvex_group_kind.h"

class QAction;
class QMenu;
class QToolButton;
class TFolderView;
class TMessageLine;
class TSettings;

// The page of the side bar that shows the folder of page groups, with the pages in each. What is done here is undone by
// Ctrl+Z in the tree, the last first. Nothing is read before the page is first shown.
class TGroupsPage final : public QWidget {
  Q_OBJECT

 public:
  // All must outlive this object.
  TGroupsPage(const TLanguage &language, TPageGroups &groups, TTabStrip &tabs, QWidget *parent = nullptr);
  ~TGroupsPage() override;

 protected:
  void showEvent(QShowEvent *event) override;

 private:
  void MakeParts();
  void MakeMenu();
  void Refresh();
  void FillMenu(QMenu &menu);
  void tbNewHGFolderClick();
  void pmHGOpenClick();
  void pmHGOrganizeClick();
  void pmHGRenameClick();
  void RenameGroup(const QString &path);
  // Groups whose pages show may be written by others in their place, which no folder tells.
  void WatchUnfolded();

  const TLanguage &m_language;
  TPageGroups &m_groups;
  TSettings &m_settings;
  THalvexGroupKind m_kind;
  TFolderEditor m_editor;
  QFileSystemWatcher m_files;
  QSet<QString> m_unfolded;
  TFolderView *m_tree;  // shHalvexGroups
  TMessageLine *m_message;
  QToolButton *m_newFolder;  // tbNewHGFolder
  QToolButton *m_refresh;    // tbHGRefresh
  QAction *m_open = nullptr;
  QAction *m_organize = nullptr;
  QAction *m_rename = nullptr;
  QAction *m_delete = nullptr;
  QAction *m_makeFolder = nullptr;
  QAction *m_lookAgain = nullptr;
  bool m_wasShown = false;
  bool m_isStale = false;
};
