#include "platform/hand_off.h"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <QDeadlineTimer>
#include <QFileInfo>
#include <QStringList>
#include <QThread>

#include "platform/hand_off_record.h"
#include "platform/instance_lock.h"
#include "platform/local_socket.h"

namespace {

constexpr unsigned long PauseBetweenTries = 10;  // milliseconds

class TDescriptor final {
 public:
  explicit TDescriptor(int descriptor) : m_descriptor(descriptor) {}
  ~TDescriptor() {
    if (m_descriptor >= 0) ::close(m_descriptor);
  }
  TDescriptor(const TDescriptor &) = delete;
  TDescriptor &operator=(const TDescriptor &) = delete;
  operator int() const { return m_descriptor; }

 private:
  int m_descriptor;
};

bool WaitFor(int descriptor, short events, const QDeadlineTimer &deadline) {
  pollfd entry{descriptor, events, 0};
  int ready = 0;
  do {
    ready = ::poll(&entry, 1, int(deadline.remainingTime()));
  } while (ready < 0 && errno == EINTR);
  return ready > 0;
}

bool SendAll(int descriptor, const QByteArray &bytes, const QDeadlineTimer &deadline) {
  qsizetype sent = 0;
  while (sent < bytes.size()) {
    const ssize_t count = ::send(descriptor, bytes.constData() + sent, size_t(bytes.size() - sent), MSG_NOSIGNAL);
    if (count > 0) {
      sent += count;
    } else if (errno != EINTR && (errno != EAGAIN || !WaitFor(descriptor, POLLOUT, deadline))) {
      return false;
    }
  }
  return true;
}

// True only when the receiver said that it has taken the record; what it closes without a word may be sent again.
bool IsTaken(int descriptor, const QDeadlineTimer &deadline) {
  if (!WaitFor(descriptor, POLLIN, deadline)) return false;
  char answer = 0;
  return ::recv(descriptor, &answer, 1, 0) == 1 && answer == HandOffRecord::Taken;
}

bool Deliver(const QString &socketFile, const QByteArray &bytes, const QDeadlineTimer &deadline) {
  const TDescriptor descriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  if (descriptor < 0) return false;
  const sockaddr_un address = LocalSocket::Address(socketFile);
  // A full queue of connections is answered like a missing listener, so that the lock is looked at in between.
  if (::connect(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0) return false;
  return LocalSocket::IsOwnUser(descriptor) && SendAll(descriptor, bytes, deadline) && IsTaken(descriptor, deadline);
}

}  // namespace

THandOff SendToRunningInstance(TInstanceLock &lock, const QString &text, const QString &activationToken, int patience) {
  QByteArray bytes;
  if (!activationToken.isEmpty()) bytes = HandOffRecord::Encode(HandOffRecord::ActivationTag, activationToken);
  bytes += HandOffRecord::Encode(HandOffRecord::Tag, text);
  const QDeadlineTimer deadline(patience);
  for (;;) {
    if (lock.CreateInstanceMutex()) return THandOff::BecameFirst;
    if (Deliver(lock.SocketFile(), bytes, deadline)) return THandOff::Delivered;
    if (deadline.hasExpired()) return THandOff::Nobody;
    QThread::msleep(PauseBetweenTries);
  }
}

THandOff HandOffCommandLine(TInstanceLock &lock, const QStringList &arguments) {
  QString token = qEnvironmentVariable("XDG_ACTIVATION_TOKEN");
  if (token.isEmpty()) token = qEnvironmentVariable("DESKTOP_STARTUP_ID");
  return SendToRunningInstance(lock, FullFileName(arguments.value(0)), token);
}

QString FullFileName(const QString &argument) {
  const QFileInfo file(argument);
  return !argument.isEmpty() && file.isFile() ? file.absoluteFilePath() : argument;
}
