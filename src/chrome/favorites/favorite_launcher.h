#pragma once

#include <QObject>
#include <QStringList>

#include "chrome/folder_view/folder_kind.h"
#include "config/settings_table.h"

class QWidget;
class TLoadQueue;
class TTabStrip;
struct TFavorite;

// Opens favorites, for menus, bars and windows.
class TFavoriteLauncher final : public QObject {
  Q_OBJECT

 public:
  // So many pages are opened at once without a question.
  static constexpr qsizetype MostUnasked = 20;
  // More are damage or a mistake, and would bury the window. The question says so.
  static constexpr qsizetype MostPages = 5000;

  // `window` owns the dialogs; all must outlive this object.
  TFavoriteLauncher(QWidget *window, TTabStrip &tabs, TLoadQueue &queue);

  // Opens what the favorite leads to: an existing file in the desktop's program for it, anything else as an address. A
  // script runs in the page in front, wherever it was to open. A folder does nothing.
  void Open(const TFavorite &favorite, TOpenPlace place, const TFlagSetting &newTab = Setting::FavoritesNewWin);
  // The same for an address or the path of a file, of any name.
  void OpenTarget(const QString &target, TOpenPlace place, const TFlagSetting &newTab = Setting::FavoritesNewWin);
  // What Open would open for each favorite of the folder, but not of its sub-folders: pages in new tabs at the end. See
  // FavoritesFolder::Targets.
  void OpenAll(const QString &folder);
  // Each in a new tab, as the setting for new tabs has it.
  void OpenInNewTabs(const QStringList &addresses);

 private:
  // Asks where there are many; how many of them are to be opened.
  [[nodiscard]] qsizetype AskHowMany(qsizetype pages);
  void OpenFile(const QString &path);

  QWidget *m_window;
  TTabStrip &m_tabs;
  TLoadQueue &m_queue;
};
