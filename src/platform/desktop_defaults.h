#pragma once

#include <functional>
#include <QHash>
#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

class QProcess;

// What the desktop opens the program's types of files and addresses with: makes it this program, and takes that back.
// It is told by the desktop's own tools (xdg-settings, xdg-mime), one after the other, since all of them change the
// same lists; a desktop without them is left as it is. Nothing that fails is told.
class TDesktopDefaults final : public QObject {
  Q_OBJECT

 public:
  using TBefore = QHash<QString, QString>;  // entries by the types that they opened before

  explicit TDesktopDefaults(QObject *parent = nullptr) : QObject(parent) {}
  // Lets the tool that is running end its work, for a few seconds.
  ~TDesktopDefaults() override;

  // From now on the program opens `types`. A program that is not installed is made known to the desktop first, by an
  // entry among the user's own. Gives what opened them before, where that was some other program.
  TBefore Make(const QStringList &types);
  // Of `types` those that the program opens go back to what opened them `before`, or to nobody's choice; the others are
  // left alone. With `forget` the entry that Make has written goes, too.
  void TakeBack(const QStringList &types, const TBefore &before, bool forget);
  // True when nothing is left to be done after so many milliseconds.
  bool WaitForDone(int milliseconds);

 private:
  void MakeKnown();
  void Forget();
  void Run(const QStringList &command);
  void RunNext();

  QList<QStringList> m_waiting;
  QProcess *m_running = nullptr;
};
