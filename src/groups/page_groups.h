#pragma once

#include <QObject>
#include <QString>

#include "groups/group_folder.h"

class QAction;
class QFileDialog;
class QMenu;
class TBrowserTab;
class TCloseAllTabs;
class THalvexGroup;
class TLanguage;
class TLoadQueue;
class TRegistryStore;
class TTabMenu;
class TTabStrip;

// Page groups as the main window offers them: opening a group into tabs, saving tabs as a group, the groups menu and
// the editor. What cannot be read or written is told to the user with the system's reason.
class TPageGroups final : public QObject {
  Q_OBJECT

 public:
  // A group of more pages is refused: it is damaged or not made by hand, and its tabs would bury the window.
  static constexpr int MostPages = 5000;

  // `window` becomes the parent and owns the dialogs; all others must live as long as it handles events.
  TPageGroups(QWidget *window, TTabStrip &tabs, TCloseAllTabs &closeAll, TLoadQueue &queue, const TLanguage &language,
              TRegistryStore &store);

  // Whether an argument of the command line is a page group: a path, or a "file:" URL, with the extension ".hgp" in any
  // spelling. The file need not exist.
  [[nodiscard]] static bool IsGroupFile(const QString &argument);
  // The same for what another start hands over: here the file must exist, and ".hgp" is spelled exactly so.
  [[nodiscard]] static bool IsHandedOverGroup(const QString &argument);

  // Opens the pages of a group file, a path or a "file:" URL, at the end of the strip in the group's order. With
  // `closeFirst` the tabs that are open are closed before, without asking, and the first page takes the tab that is
  // left. `atStartup` marks the tabs as restored. A group without pages, or a file that is not there, does nothing.
  //   groups menu, tree, hand-over     HalvexGroupClick
  //   setting StartupHalvexGroup       OpenHalvexGroup(group, no tab was taken yet)
  //   argument of the first start      OpenHalvexGroup(argument, true, true)
  void OpenHalvexGroup(const QString &argument, bool closeFirst, bool atStartup = false);
  // As the setting HGCloseFirst says, which is read once and then follows SetCloseFirst: other windows may store
  // theirs.
  void HalvexGroupClick(const QString &argument);
  [[nodiscard]] bool CloseFirst() const { return m_closeFirst; }
  void SetCloseFirst(bool closeFirst) { m_closeFirst = closeFirst; }

  // Saves the tabs that show in the strip as a new group (F7).
  void actSaveAsHalvexGroupExecute();
  // Adds the tab's page to an existing group (F6 for the active tab).
  void AddTabToHalvexGroup(TBrowserTab *tab);
  // Lets the user choose a group and opens the editor on it.
  void actOrganizeHalvexGroupsExecute();
  // Opens the editor on this group; anything but an existing file does nothing.
  void Organize(const QString &path);

  // The group that the user chose, or empty; also when this object has gone meanwhile.
  [[nodiscard]] QString AskExistingFile();

  // Puts the commands into `menu` and, each time it opens, the groups below them if they have changed since.
  void FillMenu(QMenu *menu);
  // Adds "add to page group" (pmTabAddToHalvexGroup) to the menu of a tab.
  void ExtendTabMenu(TTabMenu &tabMenu);

  // The folder's commands (rename, delete, new folder, refresh) and its news.
  [[nodiscard]] TGroupFolder &Folder() { return *m_folder; }

 private:
  QAction *AddCommand(const char *name, const QString &text, int key, void (TPageGroups::*command)());
  void pmAddToHalvexGroupClick();
  void RefillMenu(QMenu *menu, int fixedItems);
  void OpenEntry(TBrowserTab *tab, const QString &name, QString value, bool atStartup);
  // The same for a group that may be new.
  [[nodiscard]] QString AskNewFile();
  [[nodiscard]] QString Ask(QFileDialog *dialog);
  void Save(const THalvexGroup &group);
  void TellUnreadable(const QString &path, const QString &reason);

  QWidget *m_window;
  TTabStrip &m_tabs;
  TCloseAllTabs &m_closeAll;
  TLoadQueue &m_queue;
  const TLanguage &m_language;
  TGroupFolder *m_folder;
  QAction *m_add;
  QAction *m_saveAll;
  QAction *m_organize;
  bool m_closeFirst;
  bool m_groupsMenuStale = true;  // The folder has changed since the menu was filled.
};
