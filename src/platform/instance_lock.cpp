#include "platform/instance_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <QDir>
#include <QFile>
#include <utility>

#include "platform/local_socket.h"

namespace {

// The sticky bit keeps the system's clean-up of the session's folder away from them.
constexpr mode_t FileMode = S_ISVTX | S_IRUSR | S_IWUSR;

const QString LockName = QStringLiteral("/instance.lock");
const QString SocketName = QStringLiteral("/instance.socket");

// Makes the last folder of the path; one that is there must be the user's own and is closed to everybody else.
bool MakeOwnFolder(const QString &path) {
  const QByteArray name = QFile::encodeName(path);
  ::mkdir(name.constData(), S_IRWXU);
  struct stat status = {};
  if (::lstat(name.constData(), &status) != 0 || !S_ISDIR(status.st_mode) || status.st_uid != ::geteuid()) return false;
  return (status.st_mode & 0777) == S_IRWXU || ::chmod(name.constData(), S_IRWXU) == 0;
}

// A folder that is there may still take no file, as on a file system that is read-only.
bool CanHold(const QString &folder, const QString &file) {
  const QByteArray name = QFile::encodeName(folder + file);
  if (::access(QFile::encodeName(folder).constData(), W_OK | X_OK) != 0) return false;
  struct stat status = {};
  if (::lstat(name.constData(), &status) != 0) return errno == ENOENT;
  return S_ISREG(status.st_mode) && ::access(name.constData(), R_OK | W_OK) == 0;
}

QString SessionFolder() {
  QStringList candidates;
  const QString session = QFile::decodeName(qgetenv("XDG_RUNTIME_DIR"));
  if (QDir::isAbsolutePath(session)) candidates.append(QDir::cleanPath(session) + QStringLiteral("/zarvela"));
  candidates.append(QDir::tempPath() + QStringLiteral("/zarvela-%1").arg(::geteuid()));
  for (const QString &folder : candidates) {
    const bool isGood = LocalSocket::Fits(folder + SocketName) && MakeOwnFolder(folder) && CanHold(folder, LockName);
    if (isGood) return folder;
  }
  return {};
}

int Listen(const QString &path) {
  // Only the holder of the lock comes here, so a socket that lies there is a dead one's.
  ::unlink(QFile::encodeName(path).constData());
  const int listener = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  if (listener < 0) return -1;
  const sockaddr_un address = LocalSocket::Address(path);
  if (::bind(listener, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0 ||
      ::chmod(address.sun_path, FileMode) != 0 || ::listen(listener, SOMAXCONN) != 0) {
    ::close(listener);
    return -1;
  }
  return listener;
}

}  // namespace

TInstanceLock::TInstanceLock() : m_folder(SessionFolder()) {}

TInstanceLock::~TInstanceLock() {
  if (m_listener >= 0) ::close(m_listener);
  if (m_lock >= 0) ::close(m_lock);
}

bool TInstanceLock::CreateInstanceMutex() {
  if (m_held) return true;
  if (!IsUsable()) return false;
  if (m_lock < 0) {
    const QByteArray name = QFile::encodeName(LockFile());
    m_lock = ::open(name.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, FileMode);
  }
  if (m_lock < 0 || ::flock(m_lock, LOCK_EX | LOCK_NB) != 0) return false;
  m_held = true;
  ::fchmod(m_lock, FileMode);
  m_listener = Listen(SocketFile());
  return true;
}

QString TInstanceLock::LockFile() const {
  return m_folder + LockName;
}

QString TInstanceLock::SocketFile() const {
  return m_folder + SocketName;
}

int TInstanceLock::TakeListener() {
  return std::exchange(m_listener, -1);
}
