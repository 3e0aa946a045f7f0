#include "config/options.h"

#include <algorithm>

#include "config/registry_paths.h"

namespace {

constexpr TRegistryHive Hive = TRegistryHive::CurrentUser;

struct TAutoCompleteMode {
  int mode;
  const char *style;
};
constexpr TAutoCompleteMode AutoCompleteModes[] = {{1, "IE4"}, {2, "IE5"}};
constexpr const char *NoAutoComplete = "none";

std::optional<int> Number(const std::optional<QString> &text) {
  if (!text) return std::nullopt;
  bool isNumber = false;
  const int number = text->trimmed().toInt(&isNumber);
  return isNumber ? std::optional(number) : std::nullopt;
}

}  // namespace

TZVOptions::TZVOptions(TRegistryStore &store) : m_store(store) {}

std::optional<QString> TZVOptions::Read(const char *name) const {
  return m_store.Read(Hive, RegistryKey::CurrentVersion, name);
}

bool TZVOptions::Write(const char *name, const QString &data) {
  return m_store.Write(Hive, RegistryKey::CurrentVersion, name, data);
}

bool TZVOptions::Get(const TFlagSetting &setting) const {
  return Number(Read(setting.name)).value_or(setting.fallback ? 1 : 0) != 0;
}

int TZVOptions::Get(const TIntegerSetting &setting) const {
  if (const auto number = Number(Read(setting.name))) return *number;
  return setting.dynamic != nullptr ? setting.dynamic() : setting.fallback;
}

QString TZVOptions::Get(const TStringSetting &setting) const {
  if (const auto text = Read(setting.name)) return *text;
  return setting.dynamic != nullptr ? setting.dynamic() : QString(setting.fallback);
}

bool TZVOptions::Set(const TFlagSetting &setting, bool value) {
  return Write(setting.name, value ? "1" : "0");
}

bool TZVOptions::Set(const TIntegerSetting &setting, int value) {
  return Write(setting.name, QString::number(setting.clamp != nullptr ? setting.clamp(value) : value));
}

bool TZVOptions::Set(const TStringSetting &setting, const QString &value) {
  return Write(setting.name, value);
}

int TZVOptions::AutoCompleteMode() const {
  return AutoCompleteModeOf(Get(Setting::AutoCompleteStyle));
}

int TZVOptions::AutoCompleteModeOf(const QString &style) {
  for (const TAutoCompleteMode &known : AutoCompleteModes) {
    if (style == known.style) return known.mode;
  }
  return 0;
}

void TZVOptions::SetAutoCompleteMode(int mode) {
  Set(Setting::AutoCompleteStyle, AutoCompleteStyleOf(mode));
}

QString TZVOptions::AutoCompleteStyleOf(int mode) {
  const auto *known = std::ranges::find(AutoCompleteModes, mode, &TAutoCompleteMode::mode);
  return known != std::end(AutoCompleteModes) ? known->style : NoAutoComplete;
}

TNamedAddresses TZVOptions::List(const char *key) const {
  TNamedAddresses entries;
  for (const TRegistryValue &value : m_store.Values(Hive, key)) {
    entries.append(TNamedAddress{value.name, value.data}.AsRead());
  }
  return entries;
}

bool TZVOptions::SetList(const char *key, const TNamedAddresses &entries) {
  QList<TRegistryValue> values;
  values.reserve(entries.size());
  for (const TNamedAddress &entry : entries) {
    const TNamedAddress written = entry.AsRead();
    values.append({written.name, written.address});
  }
  return m_store.ReplaceKey(Hive, key, values);
}

TNamedAddresses TZVOptions::LastOpenSites() const {
  return List(RegistryKey::LastOpenSites);
}
TNamedAddresses TZVOptions::SearchEngines() const {
  return List(RegistryKey::SearchEngines);
}
TNamedAddresses TZVOptions::SearchBarEntries() const {
  return List(RegistryKey::SearchBar);
}
TNamedAddresses TZVOptions::QuickSearchEntries() const {
  return List(RegistryKey::QuickSearch);
}
bool TZVOptions::SetLastOpenSites(const TNamedAddresses &entries) {
  return SetList(RegistryKey::LastOpenSites, entries);
}
bool TZVOptions::SetSearchEngines(const TNamedAddresses &entries) {
  return SetList(RegistryKey::SearchEngines, entries);
}
bool TZVOptions::SetSearchBarEntries(const TNamedAddresses &entries) {
  return SetList(RegistryKey::SearchBar, entries);
}
bool TZVOptions::SetQuickSearchEntries(const TNamedAddresses &entries) {
  return SetList(RegistryKey::QuickSearch, entries);
}

QStringList TZVOptions::PopupList() const {
  QStringList addresses;
  for (const TRegistryValue &value : m_store.Values(Hive, RegistryKey::PopupHalvex)) {
    // Looked for in the whole line, so that a pattern with another address in its query stays whole where it can. One
    // that is no address is kept without its value's name: written back it must still be itself.
    const QString pattern = TNamedAddress{value.name, value.data}.WebAddress();
    if (!pattern.isEmpty()) addresses.append(pattern);
  }
  std::ranges::stable_sort(addresses,
                           [](const QString &a, const QString &b) { return a.compare(b, Qt::CaseInsensitive) < 0; });
  const auto repeated = std::ranges::unique(
      addresses, [](const QString &a, const QString &b) { return a.compare(b, Qt::CaseInsensitive) == 0; });
  addresses.erase(repeated.begin(), repeated.end());
  return addresses;
}

bool TZVOptions::SetPopupList(const QStringList &patterns) {
  QList<TRegistryValue> values;
  values.reserve(patterns.size());
  for (const QString &pattern : patterns) values.append({"url" + QString::number(values.size() + 1), pattern});
  return m_store.ReplaceKey(Hive, RegistryKey::PopupHalvex, values);
}

QStringList TZVOptions::BrowserHelperObjects() const {
  return m_store.Subkeys(Hive, RegistryKey::BrowserHelperObjects);
}

void TZVOptions::RemoveZvid() {
  if (Read("ZVID")) m_store.DeleteValue(Hive, RegistryKey::CurrentVersion, "ZVID");
}
