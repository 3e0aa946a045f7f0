#include "platform/instance_channel.h"

#include <sys/inotify.h>
#include <sys/socket.h>
#include <unistd.h>

#include <QFile>
#include <QGuiApplication>
#include <QLocalSocket>
#include <QSocketNotifier>
#include <utility>

#include "platform/hand_off_record.h"
#include "platform/instance_lock.h"
#include "platform/local_socket.h"

namespace {

// The system tells of a closed file a moment before it frees the file's lock.
constexpr int TakeOverDelay = 100;  // milliseconds

// May be called from the notifier's own signal.
void EndWatch(QSocketNotifier *&notifier, int &descriptor) {
  if (notifier != nullptr) {
    notifier->setEnabled(false);
    std::exchange(notifier, nullptr)->deleteLater();
  }
  if (descriptor >= 0) ::close(std::exchange(descriptor, -1));
}

void Refuse(QLocalSocket *socket) {
  socket->abort();
  socket->deleteLater();
}

}  // namespace

TInstanceChannel::TInstanceChannel(QObject *parent) : QObject(parent) {
  m_takeOver.setSingleShot(true);
  m_takeOver.setInterval(TakeOverDelay);
  connect(&m_next, &QTimer::timeout, this, &TInstanceChannel::HandOut);
}

TInstanceChannel::~TInstanceChannel() {
  Close();
}

void TInstanceChannel::Serve(TInstanceLock &lock) {
  if (lock.CreateInstanceMutex()) {
    Listen(lock);
  } else if (lock.IsUsable()) {
    FollowLock(lock);
  }
}

void TInstanceChannel::Listen(TInstanceLock &lock) {
  m_listener = lock.TakeListener();
  if (m_listener < 0) return;
  // Not by QLocalServer: it stops listening, and removes the socket, as soon as one connection cannot be accepted, as
  // when the process is out of descriptors for a moment.
  m_listenerNotifier = new QSocketNotifier(m_listener, QSocketNotifier::Read, this);
  connect(m_listenerNotifier, &QSocketNotifier::activated, this, &TInstanceChannel::TakeConnections);
}

void TInstanceChannel::FollowLock(TInstanceLock &lock) {
  // The end of the holder closes its lock file, which is the sign to try.
  m_lockWatch = ::inotify_init1(IN_CLOEXEC | IN_NONBLOCK);
  if (m_lockWatch < 0) return;
  ::inotify_add_watch(m_lockWatch, QFile::encodeName(lock.LockFile()).constData(), IN_CLOSE_WRITE);
  m_lockNotifier = new QSocketNotifier(m_lockWatch, QSocketNotifier::Read, this);
  connect(m_lockNotifier, &QSocketNotifier::activated, this, [this] {
    char events[1024];
    while (::read(m_lockWatch, events, sizeof events) > 0) {
    }
    m_takeOver.start();
  });
  connect(&m_takeOver, &QTimer::timeout, this, [this, &lock] {
    if (!lock.CreateInstanceMutex()) return;  // It was another start that looked and went.
    StopFollowing();
    Listen(lock);
  });
  m_takeOver.start();  // The holder may have ended before the watch began.
}

void TInstanceChannel::StopFollowing() {
  m_takeOver.stop();
  EndWatch(m_lockNotifier, m_lockWatch);
}

void TInstanceChannel::StopListening() {
  EndWatch(m_listenerNotifier, m_listener);
}

void TInstanceChannel::Start() {
  m_started = true;
  if (!m_waiting.isEmpty()) m_next.start();
}

void TInstanceChannel::Close() {
  StopFollowing();
  m_started = false;
  m_next.stop();
  StopListening();
  for (QLocalSocket *socket : std::exchange(m_reading, {})) Refuse(socket);
  for (const TWaiting &waiting : std::exchange(m_waiting, {})) {
    if (waiting.socket) Refuse(waiting.socket);
  }
}

void TInstanceChannel::TakeConnections() {
  // All that have come, so that a flood is turned away as fast as it comes; but the window has its turn in between.
  for (int i = 0; i < 2 * MostConnections && m_listener >= 0; ++i) {
    const int descriptor = ::accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
    if (descriptor < 0) return;
    if (LocalSocket::IsOwnUser(descriptor) && m_reading.size() < MostConnections) {
      TakeConnection(descriptor);
    } else {
      ::close(descriptor);
    }
  }
}

void TInstanceChannel::TakeConnection(int descriptor) {
  auto *socket = new QLocalSocket(this);
  socket->setReadBufferSize(2 * HandOffRecord::MostBytes);
  socket->setSocketDescriptor(descriptor);
  m_reading.append(socket);
  connect(socket, &QLocalSocket::readyRead, this, [this, socket] { ReadFrom(socket); });
  connect(socket, &QLocalSocket::disconnected, this, [this, socket] {
    ReadFrom(socket);  // It may have sent all and left at once.
    m_reading.removeOne(socket);
    socket->deleteLater();
  });
  QTimer::singleShot(Patience, socket, [this, socket] {
    if (m_reading.removeOne(socket)) Refuse(socket);
  });
}

void TInstanceChannel::ReadFrom(QLocalSocket *socket) {
  if (!m_reading.contains(socket)) return;
  const QByteArray bytes = socket->peek(2 * HandOffRecord::MostBytes);
  QString token;
  HandOffRecord::TParsed record = HandOffRecord::Parse(bytes);
  if (record.state == HandOffRecord::TState::Complete && record.tag == HandOffRecord::ActivationTag) {
    token = record.text;
    record = HandOffRecord::Parse(QByteArrayView(bytes).sliced(record.size));
    if (record.tag == HandOffRecord::ActivationTag) record.state = HandOffRecord::TState::Malformed;
  }
  if (record.state == HandOffRecord::TState::Incomplete) return;
  m_reading.removeOne(socket);
  if (record.state == HandOffRecord::TState::Malformed || m_waiting.size() >= MostWaiting) {
    Refuse(socket);
    return;
  }
  m_waiting.append({socket, record.text, token});
  if (m_started) m_next.start();
}

void TInstanceChannel::HandOut() {
  if (m_waiting.isEmpty()) {
    m_next.stop();
    return;
  }
  const TWaiting record = m_waiting.takeFirst();
  if (record.socket) {
    record.socket->write(&HandOffRecord::Taken, 1);
    record.socket->flush();
    record.socket->disconnectFromServer();
  }
  // Where the desktop hands out leave to take the focus, the toolkit looks for it in the environment.
  if (!record.token.isEmpty() && QGuiApplication::platformName().startsWith(QLatin1String("wayland"))) {
    qputenv("XDG_ACTIVATION_TOKEN", record.token.toUtf8());
  }
  Q_EMIT Received(record.text);
}
