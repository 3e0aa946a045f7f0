#pragma once

#include <QList>
#include <QObject>
#include <QPointer>
#include <QTimer>

class QLocalSocket;
class QSocketNotifier;
class TInstanceLock;

// The running instance's end of the hand-off (the record: platform/hand_off_record.h). Only processes of the same user
// are heard. Malformed records are dropped without a word, and a sender that does not get its record across within
// `Patience` is let go. Nothing here blocks: records are read as they come and handed out one per turn of the event
// loop.
class TInstanceChannel final : public QObject {
  Q_OBJECT

 public:
  static constexpr int Patience = 2000;        // milliseconds for one record
  static constexpr int MostConnections = 128;  // being read at once
  // Records that wait to be handed out. What comes on top is refused; a second start then tries again, and a flood
  // ends.
  static constexpr int MostWaiting = 64;

  explicit TInstanceChannel(QObject *parent = nullptr);
  ~TInstanceChannel() override;

  // Listens for the holder of the lock. A process that does not hold it (one of several instances) takes it over when
  // its holder ends, so that later starts still find somebody. `lock` must live longer than this object.
  void Serve(TInstanceLock &lock);
  // From now on records are handed out; what has come before waits until then.
  void Start();
  // Hears nobody any more; whoever was not answered yet looks for another instance.
  void Close();

 Q_SIGNALS:
  // Another start wants `text` opened; an empty one only wants the window in front.
  void Received(const QString &text);

 private:
  struct TWaiting {
    QPointer<QLocalSocket> socket;
    QString text;
    QString token;
  };

  void Listen(TInstanceLock &lock);
  void FollowLock(TInstanceLock &lock);
  void StopFollowing();
  void StopListening();
  void TakeConnections();
  void TakeConnection(int descriptor);
  void ReadFrom(QLocalSocket *socket);
  void HandOut();

  QSocketNotifier *m_listenerNotifier = nullptr;
  int m_listener = -1;
  QList<QLocalSocket *> m_reading;
  QList<TWaiting> m_waiting;
  QTimer m_next;
  QTimer m_takeOver;
  QSocketNotifier *m_lockNotifier = nullptr;
  int m_lockWatch = -1;
  bool m_started = false;
};
