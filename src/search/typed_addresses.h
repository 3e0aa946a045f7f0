#pragma once

#include <QStringList>

class TRegistryStore;

// The addresses that the user has typed, the newest first.
class TTypedAddresses final {
 public:
  static constexpr int Most = 25;

  [[nodiscard]] const QStringList &List() const { return m_list; }
  // Puts the address on top; one that is there already, letter for letter, moves. One entry beyond the most is let go.
  void File(const QString &address);
  void Remove(const QString &address) { m_list.removeOne(address); }
  void Clear() { m_list.clear(); }

  // From and to the values "url1", "url2" and so on of the key that the desktop's browsers share. Reading ends at the
  // first value that is missing or empty; writing replaces the whole key. A refused write is not reported.
  void Load(const TRegistryStore &store);
  void Save(TRegistryStore &store) const;

 private:
  QStringList m_list;
};
