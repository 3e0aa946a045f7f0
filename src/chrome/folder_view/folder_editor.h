#pragma once

#include <QList>
#include <QObject>

#include "favorites/favorites_edit.h"

// What was done in the windows that share it, so that it can be undone, the last first.
class TFolderEditor final : public QObject {
  Q_OBJECT

 public:
  using QObject::QObject;

  // Takes note of a change that was tried, and tells of it. True when all of it was done.
  bool Take(const TFavoritesChange &change);
  // The same where the one who tried it has told why something was not done: no Failed.
  void Note(const TFavoritesChange &change);
  [[nodiscard]] bool CanUndo() const { return !m_done.isEmpty(); }
  // What of it could not be undone is the last again.
  void Undo();

 Q_SIGNALS:
  // The files are not what they were.
  void Done(const TFavoritesChange &change);
  // Something could not be done, for the system's reason. What could be was told by Done before.
  void Failed(const QString &reason);

 private:
  QList<TFavoritesChange> m_done;  // the last one at the end
};
