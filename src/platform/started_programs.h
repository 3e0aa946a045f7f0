#pragma once

#include <QObject>
#include <QStringList>

// Programs that are started for the user and live on by themselves, also when this one ends. For a moment each is
// watched, since many starters find out only then that they cannot do what was asked of them.
class TStartedPrograms final : public QObject {
  Q_OBJECT

 public:
  // Milliseconds for which an end with an error counts as a failure; later it is the program's own affair.
  static constexpr int WatchTime = 5000;

  explicit TStartedPrograms(QObject *parent = nullptr) : QObject(parent) {}
  ~TStartedPrograms() override;

  // The program and its arguments, which no shell ever sees. False when there is no such program, or it cannot be
  // started.
  bool Start(const QStringList &command);

 Q_SIGNALS:
  // A program that had been started has ended with an error; `program` is its name without a folder.
  void Failed(const QString &program);
};
