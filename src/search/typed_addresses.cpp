#include "search/typed_addresses.h"

#include <QHash>
#include <utility>

#include "config/registry_paths.h"
#include "store/registry_store.h"

namespace {

constexpr TRegistryHive Hive = TRegistryHive::CurrentUser;
const QString Key = QString::fromLatin1(RegistryKey::TypedUrls);

QString ValueName(qsizetype position) {
  return QStringLiteral("url%1").arg(position);
}

QStringList AddressesOf(const QList<TRegistryValue> &values) {
  QHash<QString, QString> byName;
  for (const TRegistryValue &value : values) byName.insert(value.name.toCaseFolded(), value.data);
  QStringList addresses;
  for (int position = 1; position <= TTypedAddresses::Most; ++position) {
    const QString address = byName.value(ValueName(position));
    if (address.isEmpty()) break;
    addresses.append(address);
  }
  return addresses;
}

void PutOnTop(QStringList &list, const QString &address) {
  list.removeOne(address);
  list.prepend(address);
  if (list.size() > TTypedAddresses::Most) list.removeLast();
}

}  // namespace

QStringList TTypedAddresses::TChanges::In(const QStringList &list) const {
  QStringList changed = cleared ? QStringList() : list;
  for (const QString &address : removed) changed.removeOne(address);
  for (auto address = filed.crbegin(); address != filed.crend(); ++address) PutOnTop(changed, *address);
  return changed;
}

void TTypedAddresses::File(const QString &address) {
  PutOnTop(m_list, address);
  PutOnTop(m_changes.filed, address);
  m_changes.removed.removeOne(address);
}

void TTypedAddresses::Remove(const QString &address) {
  m_list.removeOne(address);
  m_changes.filed.removeOne(address);
  m_changes.removed.append(address);
}

void TTypedAddresses::Clear() {
  m_list.clear();
  m_changes = {};
  m_changes.cleared = true;
}

bool TTypedAddresses::Load(const TRegistryStore &store) {
  const auto values = store.KnownValues(Hive, Key);
  if (!values) return false;
  m_list = m_changes.In(AddressesOf(*values));
  m_loaded = true;
  return true;
}

void TTypedAddresses::Save(TRegistryStore &store) {
  store.EditKey(Hive, Key, [changes = std::exchange(m_changes, {})](const QList<TRegistryValue> &stored) {
    QList<TRegistryValue> values;
    const QStringList addresses = changes.In(AddressesOf(stored));
    for (const QString &address : addresses) values.append({ValueName(values.size() + 1), address});
    return values;
  });
}
