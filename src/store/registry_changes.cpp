#include "store/registry_changes.h"

#include <algorithm>

namespace {

using TKind = TRegistryChange::TKind;

bool IsNamed(const TRegistryValue &value, const QString &name) {
  return value.name.toCaseFolded() == name.toCaseFolded();
}

void Put(QList<TRegistryValue> &values, const TRegistryValue &value, bool overwrites) {
  const auto place = std::ranges::find_if(values, [&](const auto &known) { return IsNamed(known, value.name); });
  if (place == values.end()) {
    values.append(value);
  } else if (overwrites) {
    // The place and the spelling of the name stay.
    place->data = value.data;
    place->isInteger = value.isInteger;
  }
}

bool Empties(const TRegistryChange &change) {
  return change.kind == TKind::DeleteKey || change.kind == TKind::ReplaceKey;
}

// Whether the change leaves a key at its path.
bool Makes(const TRegistryChange &change) {
  switch (change.kind) {
    case TKind::DeleteKey:
    case TKind::DeleteValue:
      return false;
    case TKind::ReplaceKey:
      return !change.values.isEmpty();
    default:
      return true;
  }
}

}  // namespace

TKeyPath::TKeyPath(const QString &key)
    : names(key.split(u'\\', Qt::SkipEmptyParts)), folded(names.join(u'\\').toCaseFolded()) {}

bool TKeyPath::IsBelow(const TKeyPath &other) const {
  return other.folded.isEmpty() ? !folded.isEmpty() : folded.startsWith(other.folded + u'\\');
}

std::optional<bool> RegistryChanges::KeyExists(const TChanges &changes, TRegistryHive hive, const TKeyPath &path,
                                               std::optional<bool> stored) {
  for (const TRegistryChange &change : changes) {
    if (change.hive != hive) continue;
    if (Empties(change) && (change.path == path || path.IsBelow(change.path))) stored = false;
    if (Makes(change) && (change.path == path || change.path.IsBelow(path))) stored = true;
  }
  return stored;
}

QStringList RegistryChanges::Subkeys(const TChanges &changes, TRegistryHive hive, const TKeyPath &path,
                                     QStringList stored) {
  const auto level = path.names.size();
  for (const TRegistryChange &change : changes) {
    if (change.hive != hive) continue;
    if (Empties(change) && (change.path == path || path.IsBelow(change.path))) stored.clear();
    if (!change.path.IsBelow(path)) continue;
    const QString &name = change.path.names.at(level);
    const bool isChild = change.path.names.size() == level + 1;
    const auto isIt = [&](const QString &known) { return known.toCaseFolded() == name.toCaseFolded(); };
    if (isChild && Empties(change)) stored.removeIf(isIt);
    if (Makes(change) && std::ranges::none_of(stored, isIt)) stored.append(name);
  }
  return stored;
}

std::optional<QList<TRegistryValue>> RegistryChanges::Values(const TChanges &changes, TRegistryHive hive,
                                                             const TKeyPath &path,
                                                             std::optional<QList<TRegistryValue>> stored) {
  for (const TRegistryChange &change : changes) {
    if (change.hive != hive) continue;
    if (Empties(change) && (change.path == path || path.IsBelow(change.path))) stored.emplace();
    if (!stored || change.path != path) continue;
    switch (change.kind) {
      case TKind::Write:
      case TKind::WriteIfAbsent:
      case TKind::ReplaceKey:
        for (const TRegistryValue &value : change.values) Put(*stored, value, change.kind != TKind::WriteIfAbsent);
        break;
      case TKind::DeleteValue:
        stored->removeIf([&](const auto &known) { return IsNamed(known, change.values.first().name); });
        break;
      case TKind::EditKey:
        stored = change.edit(*stored);
        break;
      case TKind::CreateKey:
      case TKind::DeleteKey:
        break;
    }
  }
  return stored;
}

std::optional<QString> RegistryChanges::ValueOf(const QList<TRegistryValue> &values, const QString &name) {
  const auto place = std::ranges::find_if(values, [&](const auto &value) { return IsNamed(value, name); });
  return place != values.end() ? std::optional(place->data) : std::nullopt;
}

void RegistryChanges::Condense(TChanges &changes) {
  for (qsizetype last = changes.size() - 1; last > 0; --last) {
    const TRegistryChange later = changes.at(last);
    if (!Empties(later)) continue;
    for (qsizetype i = last - 1; i >= 0; --i) {
      const TRegistryChange &earlier = changes.at(i);
      const bool isVoid =
          earlier.hive == later.hive && (earlier.path == later.path || earlier.path.IsBelow(later.path));
      if (!isVoid) continue;
      changes.removeAt(i);
      --last;
    }
  }
}
