#pragma once

#include <QObject>

class QSocketNotifier;

// Turns the system's requests to end (SIGTERM, SIGINT, SIGHUP) into a signal of the event loop, so that a logout or a
// service manager ends the program the way a user would: with its settings written. At most one object at a time.
class TTerminationSignals final : public QObject {
  Q_OBJECT

 public:
  explicit TTerminationSignals(QObject *parent = nullptr);
  ~TTerminationSignals() override;

 Q_SIGNALS:
  void EndRequested();

 private:
  QSocketNotifier *m_notifier = nullptr;
};
