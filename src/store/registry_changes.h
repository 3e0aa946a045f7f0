#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include "store/registry_store.h"

// A key path in its parts, with empty ones left out.
struct TKeyPath {
  QStringList names;
  QString folded;

  explicit TKeyPath(const QString &key);

  [[nodiscard]] bool operator==(const TKeyPath &other) const { return folded == other.folded; }
  [[nodiscard]] bool IsBelow(const TKeyPath &other) const;
};

// One change of the registry store that is to be written.
struct TRegistryChange {
  enum class TKind { Write, WriteIfAbsent, DeleteValue, CreateKey, DeleteKey, ReplaceKey, EditKey };

  TKind kind;
  TRegistryHive hive;
  TKeyPath path;
  QList<TRegistryValue> values{};  // what is written; of a value that is deleted only the name
  TRegistryEdit edit{};
};

// What the store is going to hold, told from what its file holds (std::nullopt where that could not be read) and the
// changes that wait to be written, in their order.
namespace RegistryChanges {

using TChanges = QList<TRegistryChange>;

[[nodiscard]] std::optional<bool> KeyExists(const TChanges &changes, TRegistryHive hive, const TKeyPath &path,
                                            std::optional<bool> stored);
[[nodiscard]] QStringList Subkeys(const TChanges &changes, TRegistryHive hive, const TKeyPath &path,
                                  QStringList stored);
[[nodiscard]] std::optional<QList<TRegistryValue>> Values(const TChanges &changes, TRegistryHive hive,
                                                          const TKeyPath &path,
                                                          std::optional<QList<TRegistryValue>> stored);
[[nodiscard]] std::optional<QString> ValueOf(const QList<TRegistryValue> &values, const QString &name);
// Lets go of the changes that a later one makes void, so that a list which is written again and again does not gather.
void Condense(TChanges &changes);

}  // namespace RegistryChanges
