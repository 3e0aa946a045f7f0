#pragma once

#include <functional>
#include <QObject>
#include <QString>

#include "config/named_address.h"
#include "groups/group_folder.h"

class QFileDialog;
class QMenu;
class TBrowserTab;
class TCloseAllTabs;
class QPoint;
class THalvexGroup;
class THalvexGroupMenus;
class TLanguage;
class TLoadQueue;
class TActions;
class TSettings;
class TTabMenu;
class TTabStrip;
struct TGroupChange;

// Page groups as the main window offers them: opening a group into tabs, saving tabs as a group, the groups menu and
// the editor. What cannot be read or written is told to the user with the system's reason.
class TPageGroups final : public QObject {
  Q_OBJECT

 public:
  // A group of more pages is refused: it is damaged or not made by hand, and its tabs would bury the window.
  static constexpr int MostPages = 5000;

  // Connects its commands and fills the groups menu, each time it opens, with the groups where they have changed.
  // `window` owns the dialogs; all must outlive this object.
  TPageGroups(QWidget *window, TActions &actions, TTabStrip &tabs, TTabMenu &tabMenu, TCloseAllTabs &closeAll,
              TLoadQueue &queue);

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
  // Opens one page of a group, given by its line, in a tab that is new: with its name and its lock.
  void OpenPage(TBrowserTab *tab, const QString &line);
  // As the setting HGCloseFirst says.
  void HalvexGroupClick(const QString &argument);

  // Asks for the file of a new group over that window. `browse` has the toolkit's dialog ask for any file instead. The
  // file may lack its ending; empty for none.
  using TBrowse = std::function<QString(QWidget *over)>;
  using TNewFileQuestion = std::function<QString(QWidget *window, const TBrowse &browse)>;
  // Without one it is the toolkit's dialog.
  void SetNewFileQuestion(const TNewFileQuestion &ask) { m_askNewFile = ask; }
  // Another menu shows what the groups menu holds.
  void Serve(QMenu *menu);

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

  // The folder's commands (rename, delete, new folder, refresh) and its news.
  [[nodiscard]] TGroupFolder &Folder() { return *m_folder; }

 Q_SIGNALS:
  // Something was saved or deleted, in a few words, with what takes it back.
  void Done(const QString &text, const std::function<void()> &undo);

 private:
  void ConnectCommands(TTabMenu &tabMenu);
  void FollowFolder();
  void RefillMenu(QMenu *menu, int fixedItems);
  void OpenEntry(TBrowserTab *tab, TNamedAddress page, bool atStartup);
  // The same for a group that may be new.
  [[nodiscard]] QString AskNewFile();
  [[nodiscard]] QString Ask(QFileDialog *dialog);
  // `note` tells that it was done; %1 in it is the group's name.
  void Save(const THalvexGroup &group, const QString &note);
  void TakeBack(const TGroupChange &change, const QString &name);
  [[nodiscard]] QString BrowseNewFile(QWidget *over);
  // The menu of a group or folder in the groups menu.
  void ShowItemMenu(const QString &path, const QPoint &globalPosition);
  void TellUnreadable(const QString &path, const QString &reason);
  void Tell(const QString &text);

  QWidget *m_window;
  TActions &m_actions;
  TTabStrip &m_tabs;
  TCloseAllTabs &m_closeAll;
  TLoadQueue &m_queue;
  const TLanguage &m_language;
  TGroupFolder *m_folder;
  THalvexGroupMenus *m_menus;
  TNewFileQuestion m_askNewFile;
  bool m_groupsMenuStale = true;  // The folder has changed since the menu was filled.
};
