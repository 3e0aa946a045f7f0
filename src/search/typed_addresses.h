#pragma once

#include <QStringList>

class TRegistryStore;

// The addresses that the user has typed, the newest first; with what was changed here since they were loaded or saved,
// because other processes have the same list.
class TTypedAddresses final {
 public:
  static constexpr int Most = 25;

  [[nodiscard]] const QStringList &List() const { return m_list; }
  // Puts the address on top; one that is there already, letter for letter, moves. One entry beyond the most is let go.
  void File(const QString &address);
  void Remove(const QString &address);
  // Also what others have put there by the time it is saved.
  void Clear();

  // From and to the values "url1", "url2" and so on of the key that the desktop's browsers share. Reading ends at the
  // first value that is missing or empty; false, and the list stays as it is, when the store could not be read. What
  // was changed here is in the list that is loaded.
  bool Load(const TRegistryStore &store);
  [[nodiscard]] bool IsLoaded() const { return m_loaded; }
  // Replaces the whole key: by what it holds at that time, with what was changed here. A refused write is not reported.
  void Save(TRegistryStore &store);

 private:
  // What was changed, and how it is made good in a list.
  struct TChanges {
    QStringList filed;  // the newest first
    QStringList removed;
    bool cleared = false;

    [[nodiscard]] QStringList In(const QStringList &list) const;
  };

  QStringList m_list;
  TChanges m_changes;
  bool m_loaded = false;
};
