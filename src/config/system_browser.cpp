#include "config/system_browser.h"

#include "config/registry_paths.h"
#include "store/registry_store.h"

namespace SystemBrowser {

bool HasSearch(const TRegistryStore &store) {
  const auto version = store.Read(TRegistryHive::LocalMachine, RegistryKey::BrowserVersion, QStringLiteral("Version"));
  return !version || !version->startsWith(u'4');
}

}  // namespace SystemBrowser
