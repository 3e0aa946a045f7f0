#include "platform/web_address.h"

bool WebAddress::Is(const QUrl &url) {
  // The toolkit has made it lower case.
  const QString scheme = url.scheme();
  return scheme == QLatin1String("http") || scheme == QLatin1String("https");
}

bool WebAddress::IsPlain(const QUrl &url) {
  return Is(url) && !url.host().isEmpty() && url.userInfo().isEmpty();
}
