#pragma once

#include <functional>
#include <optional>
#include <QString>
#include <QStringList>

#include "config/named_address.h"
#include "config/settings_table.h"
#include "store/registry_store.h"

// The user's settings, by name. An object keeps no copy of any value: a getter reads the store, a setter writes it at
// once. Make one where it is needed, use it, and let it go.
//
// A flag is stored as "0" or "1", an integer as decimal text. A stored number may have blanks around it; anything else
// that is not a whole decimal number of 32 bits counts as invalid. A flag is true for every number but 0.
class TZVOptions final {
 public:
  explicit TZVOptions(TRegistryStore &store);

  // The stored value, or the table's default where it is absent or is not a number.
  [[nodiscard]] bool Get(const TFlagSetting &setting) const;
  [[nodiscard]] int Get(const TIntegerSetting &setting) const;
  [[nodiscard]] QString Get(const TStringSetting &setting) const;
  // Stores at once; false when the store refused it.
  bool Set(const TFlagSetting &setting, bool value);
  bool Set(const TIntegerSetting &setting, int value);
  bool Set(const TStringSetting &setting, const QString &value);
  // Stores the value only where there is none when this is written.
  bool SetIfAbsent(const TFlagSetting &setting, bool value);
  bool SetIfAbsent(const TIntegerSetting &setting, int value);
  bool SetIfAbsent(const TStringSetting &setting, const QString &value);

  // Address completion: 1 inline ("IE4"), 2 drop-down ("IE5"), 0 none.
  [[nodiscard]] int AutoCompleteMode() const;
  void SetAutoCompleteMode(int mode);
  [[nodiscard]] static int AutoCompleteModeOf(const QString &style);
  [[nodiscard]] static QString AutoCompleteStyleOf(int mode);

  // The lists, in the store's order; std::nullopt when the store could not be read, which is not the same as empty: who
  // writes such a list writes over what he has not seen. Writers replace the whole key in one transaction. Names end at
  // their first "=" (see TNamedAddress::AsRead); of two entries with one name the later address counts, at the earlier
  // place.
  [[nodiscard]] std::optional<TNamedAddresses> LastOpenSites() const;
  [[nodiscard]] std::optional<TNamedAddresses> SearchEngines() const;
  [[nodiscard]] std::optional<TNamedAddresses> SearchBarEntries() const;
  [[nodiscard]] std::optional<TNamedAddresses> QuickSearchEntries() const;
  // Sorted and without duplicates, both regardless of case; values in an older "name=address" layout are repaired.
  [[nodiscard]] std::optional<QStringList> PopupList() const;
  // The names of the key's subkeys, one class identifier each.
  [[nodiscard]] QStringList BrowserHelperObjects() const;
  // False when the store refused the list.
  bool SetLastOpenSites(const TNamedAddresses &entries);
  bool SetSearchEngines(const TNamedAddresses &entries);
  bool SetSearchBarEntries(const TNamedAddresses &entries);
  bool SetQuickSearchEntries(const TNamedAddresses &entries);
  bool SetPopupList(const QStringList &patterns);
  // Makes a change in a list as it is when this is written, so that what another process has put there stays. `edit`
  // is given the list as its reader gives it, and may be called more than once.
  bool EditLastOpenSites(const std::function<TNamedAddresses(const TNamedAddresses &)> &edit);
  bool EditPopupList(const std::function<void(QStringList &)> &edit);

  // Removes the retired value "ZVID".
  void RemoveZvid();

  [[nodiscard]] TRegistryStore &Store() const { return m_store; }
  // The store holds a value of this name; else getters return their default.
  [[nodiscard]] bool IsStored(const char *name) const { return Read(name).has_value(); }

 private:
  [[nodiscard]] std::optional<QString> Read(const char *name) const;
  bool Write(const char *name, const QString &data);
  bool WriteIfAbsent(const char *name, const QString &data);
  [[nodiscard]] std::optional<TNamedAddresses> List(const char *key) const;
  bool SetList(const char *key, const TNamedAddresses &entries);

  TRegistryStore &m_store;
};
