#pragma once

#include <functional>
#include <QObject>
#include <QString>

#include "platform/folder_watcher.h"

class QWidget;
class TLanguage;
struct TFavoritesChange;

// The folder of the page groups, HalvexGroups in the user's data folder, and what can be done with a path in it. Group
// files and sub-folders are given by their full path; one that is not there makes every command do nothing.
class TGroupFolder final : public QObject {
  Q_OBJECT

 public:
  // `window` owns the dialogs.
  TGroupFolder(QWidget *window, const TLanguage &language, QObject *parent);

  // The folder, made when it is missing.
  [[nodiscard]] static QString Path();
  // Begins to watch the folder; until then only the commands here make Changed come.
  void Watch();

  // Asks for the new name of a group file and renames it; ".hgp" is added to the answer, which is used as it is typed.
  // An empty answer, a name that is taken and one that cannot be used do nothing. The new path, or empty.
  QString Rename(const QString &path);
  // Gives a sub-folder another name; the same holds. The new path, or empty.
  QString RenameFolder(const QString &path, const QString &name);
  // Asks for it first.
  QString RenameFolder(const QString &path);
  // Asks, then moves the file or sub-folder to the trash; a refusal is told with its reason. True when it has gone.
  bool Delete(const QString &path);
  void Refresh() { Q_EMIT Changed(); }

 Q_SIGNALS:
  // Something in the folder is new, gone or renamed: menus are to be filled anew, trees to be refreshed.
  void Changed();
  // Delete has moved this to the trash; the function brings it back.
  void Trashed(const QString &name, const std::function<void()> &undo);

 private:
  QString Move(const QString &from, const QString &to);
  void BringBack(const TFavoritesChange &change);

  QWidget *m_window;
  const TLanguage &m_language;
  TFolderWatcher m_watcher{this};
};
