#pragma once

#include <QObject>
#include <QPoint>

#include "chrome/favorites/favorite_launcher.h"
#include "chrome/folder_view/file_work.h"
#include "favorites/favorites_folder.h"

class QMenu;
class QWidget;
class TLanguage;

// What can be done with one favorite wherever it is shown, and the menu that offers it.
class TFavoriteCommands final : public QObject {
  Q_OBJECT

 public:
  // `window` owns the dialogs; all must outlive this object.
  TFavoriteCommands(QWidget *window, TFavoriteLauncher &launcher, const TLanguage &language);

  // Fills a menu with the commands for this favorite.
  void Fill(QMenu &menu, const TFavorite &favorite, const TFlagSetting &newTab = Setting::FavoritesNewWin);
  // Pops it up.
  void ShowMenu(const TFavorite &favorite, const QPoint &globalPosition,
                const TFlagSetting &newTab = Setting::FavoritesNewWin);

  void CopyAddress(const TFavorite &favorite) const;
  // Asks for another name.
  void Rename(const TFavorite &favorite);
  // Asks, then moves it to the desktop's trash.
  void Delete(const TFavorite &favorite);
  // Shows name and address, and changes what the user changes of them.
  void ShowProperties(const TFavorite &favorite);

 Q_SIGNALS:
  // What was done, for whoever can undo it; before Changed.
  void Done(const TFavoritesChange &change);
  // Something was done to the files.
  void Changed();

 private:
  // What is said of a change that failed for that reason.
  using TFailure = std::function<QString(const QString &reason)>;

  void Do(const TFileWork::TWork &change, const TFailure &failure);
  [[nodiscard]] TFailure CannotChange() const;

  QWidget *m_window;
  TFavoriteLauncher &m_launcher;
  const TLanguage &m_language;
  TFileWork m_work;
};
