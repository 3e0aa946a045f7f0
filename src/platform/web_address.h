#pragma once

#include <QUrl>

namespace WebAddress {

// Whether the web is where it leads: its scheme is http or https.
[[nodiscard]] bool Is(const QUrl &url);

// The same of one that names a host, and nobody who is to be signed in there.
[[nodiscard]] bool IsPlain(const QUrl &url);

}  // namespace WebAddress
