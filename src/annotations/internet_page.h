#pragma once

#include <QString>

// Which pages are on the Internet, going by nothing but their address.

// A name with a dot that is not kept for networks of one's own (".local", ".internal", …), or a number that is routed
// on the Internet (IANA's registries of special-purpose addresses tell which are not). `host` as QUrl::host() has it.
[[nodiscard]] bool IsInternetHost(const QString &host);

// An http or https page of such a host.
[[nodiscard]] bool IsInternetPage(const QString &address);
