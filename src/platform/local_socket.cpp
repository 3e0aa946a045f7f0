#include "platform/local_socket.h"

#include <sys/socket.h>
#include <unistd.h>

#include <cstring>
#include <QFile>

namespace LocalSocket {

bool Fits(const QString &path) {
  return QFile::encodeName(path).size() < qsizetype(sizeof sockaddr_un::sun_path);
}

sockaddr_un Address(const QString &path) {
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  const QByteArray name = QFile::encodeName(path);
  std::memcpy(address.sun_path, name.constData(), qMin<size_t>(name.size(), sizeof address.sun_path - 1));
  return address;
}

bool IsOwnUser(int descriptor) {
  ucred peer = {};
  socklen_t size = sizeof peer;
  return ::getsockopt(descriptor, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && peer.uid == ::geteuid();
}

}  // namespace LocalSocket
