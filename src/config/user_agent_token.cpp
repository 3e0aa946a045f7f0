#include "config/user_agent_token.h"

#include <algorithm>
#include <QStringList>

#include "config/registry_paths.h"
#include "store/registry_store.h"

namespace UserAgentToken {

namespace {

const QString Key = QString::fromLatin1(RegistryKey::PostPlatform);
constexpr const char *Text = "IEAK";
// Shorter names are left alone, the program's bare name among them; that is meant.
constexpr qsizetype ShortestSwept = 9;
constexpr const char *SweptPrefixes[] = {"Pellisar", "Zarvela", "version.dll"};

bool IsSwept(const QString &name) {
  return name.size() >= ShortestSwept &&
         std::any_of(std::begin(SweptPrefixes), std::end(SweptPrefixes),
                     [&](const char *prefix) { return name.startsWith(QLatin1String(prefix)); });
}

}  // namespace

void Register(TRegistryStore &store, bool on) {
  if (!store.CreateKey(TRegistryHive::LocalMachine, Key)) return;
  store.InTransaction([&] {
    const QList<TRegistryValue> values = store.Values(TRegistryHive::LocalMachine, Key);
    for (auto value = values.rbegin(); value != values.rend(); ++value) {
      if (IsSwept(value->name)) store.DeleteValue(TRegistryHive::LocalMachine, Key, value->name);
    }
    const QString name = QString::fromLatin1(Name);
    const bool isThere = !store.Read(TRegistryHive::LocalMachine, Key, name).value_or(QString()).isEmpty();
    if (on && !isThere) store.Write(TRegistryHive::LocalMachine, Key, name, QLatin1String(Text));
    return true;
  });
}

QString Registered(const TRegistryStore &store) {
  const QString name = QString::fromLatin1(Name);
  return store.Read(TRegistryHive::LocalMachine, Key, name) ? name : QString();
}

}  // namespace UserAgentToken
