#pragma once

#include <sys/un.h>

#include <QString>

// The plain calls around a local socket that both ends of the instance channel share.
namespace LocalSocket {

// False when the path is longer than an address can hold.
[[nodiscard]] bool Fits(const QString &path);
// The path must fit.
[[nodiscard]] sockaddr_un Address(const QString &path);
// True when the process at the other end belongs to this process's user.
[[nodiscard]] bool IsOwnUser(int descriptor);

}  // namespace LocalSocket
