#pragma once

#include <functional>
#include <QList>
#include <QObject>

#include "chrome/folder_view/file_work.h"

// What was done in the windows that share it, so that it can be undone, the last first.
class TFolderEditor final : public QObject {
  Q_OBJECT

 public:
  explicit TFolderEditor(QObject *parent = nullptr);

  // Tries a change in its turn (see TFileWork), takes note of it and tells of it. `then` comes before that.
  void Do(const TFileWork::TWork &work, const QObject *by, const TFileWork::TThen &then = {});
  // Takes note of a change that was tried elsewhere, where it was told why something was not done: no Failed.
  void Note(const TFavoritesChange &change) { Take(change, nullptr); }
  // The same for what only its own function can undo, which answers with the reason why not, or with nothing.
  void NoteUndo(const std::function<QString()> &undo);
  // Tells why something was not done.
  void Tell(const QString &reason) { Q_EMIT Failed(reason); }
  [[nodiscard]] bool CanUndo() const { return !m_done.isEmpty() && !m_work.IsBusy(); }
  // What of it could not be undone is the last again.
  void Undo(const QObject *by = nullptr);

 Q_SIGNALS:
  // The files are not what they were. `by` is only to be compared, with who wanted it.
  void Done(const TFavoritesChange &change, const QObject *by);
  // Something could not be done, for the system's reason. What could be was told by Done before.
  void Failed(const QString &reason);
  // A change takes longer than a moment, or none does any more.
  void BusyChanged(bool busy);

 private:
  struct TDone {
    TFavoritesChange change{};
    std::function<QString()> undo{};
  };

  void Take(const TFavoritesChange &change, const QObject *by);
  void EndUndo(const TDone &what, const TFavoritesChange &back, const TFavoritesChange &left, const QObject *by);

  QList<TDone> m_done;  // the last one at the end
  TFileWork m_work;
};
