#include "search/typed_addresses.h"

#include "config/registry_paths.h"
#include "store/registry_store.h"

namespace {

constexpr TRegistryHive Hive = TRegistryHive::CurrentUser;
const QString Key = QString::fromLatin1(RegistryKey::TypedUrls);

QString ValueName(qsizetype position) {
  return QStringLiteral("url%1").arg(position);
}

}  // namespace

void TTypedAddresses::File(const QString &address) {
  const qsizetype place = m_list.indexOf(address);
  if (place >= 0) {
    m_list.move(place, 0);
  } else {
    m_list.prepend(address);
  }
  if (m_list.size() > Most) m_list.removeAt(Most);
}

void TTypedAddresses::Load(const TRegistryStore &store) {
  m_list.clear();
  for (int position = 1; position <= Most; ++position) {
    const QString address = store.Read(Hive, Key, ValueName(position)).value_or(QString());
    if (address.isEmpty()) break;
    m_list.append(address);
  }
}

void TTypedAddresses::Save(TRegistryStore &store) const {
  QList<TRegistryValue> values;
  for (const QString &address : m_list) values.append({ValueName(values.size() + 1), address});
  store.InTransaction([&] { return store.ReplaceKey(Hive, Key, values) && store.CreateKey(Hive, Key); });
}
