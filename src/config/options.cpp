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

QString TextOf(const TFlagSetting &, bool value) {
  return value ? QStringLiteral("1") : QStringLiteral("0");
}

QString TextOf(const TIntegerSetting &setting, int value) {
  return QString::number(setting.clamp != nullptr ? setting.clamp(value) : value);
}

bool ComesBefore(const QString &a, const QString &b) {
  return a.compare(b, Qt::CaseInsensitive) < 0;
}

QStringList PatternsOf(const QList<TRegistryValue> &values) {
  QStringList patterns;
  for (const TRegistryValue &value : values) {
    // Looked for in the whole line, so that a pattern with another address in its query stays whole where it can. One
    // that is no address is kept without its value's name: written back it must still be itself.
    const QString pattern = TNamedAddress{value.name, value.data}.WebAddress();
    if (!pattern.isEmpty()) patterns.append(pattern);
  }
  std::ranges::stable_sort(patterns, ComesBefore);
  const auto repeated = std::ranges::unique(
      patterns, [](const QString &a, const QString &b) { return a.compare(b, Qt::CaseInsensitive) == 0; });
  patterns.erase(repeated.begin(), repeated.end());
  return patterns;
}

QList<TRegistryValue> ValuesOf(const QStringList &patterns) {
  QList<TRegistryValue> values;
  values.reserve(patterns.size());
  for (const QString &pattern : patterns) values.append({"url" + QString::number(values.size() + 1), pattern});
  return values;
}

TNamedAddresses EntriesOf(const QList<TRegistryValue> &values) {
  TNamedAddresses entries;
  entries.reserve(values.size());
  for (const TRegistryValue &value : values) entries.append(TNamedAddress{value.name, value.data}.AsRead());
  return entries;
}

QList<TRegistryValue> ValuesOf(const TNamedAddresses &entries) {
  QList<TRegistryValue> values;
  values.reserve(entries.size());
  for (const TNamedAddress &entry : entries) {
    const TNamedAddress written = entry.AsRead();
    values.append({written.name, written.address});
  }
  return values;
}

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

bool TZVOptions::WriteIfAbsent(const char *name, const QString &data) {
  return m_store.WriteIfAbsent(Hive, RegistryKey::CurrentVersion, name, data);
}

bool TZVOptions::Set(const TFlagSetting &setting, bool value) {
  return Write(setting.name, TextOf(setting, value));
}

bool TZVOptions::Set(const TIntegerSetting &setting, int value) {
  return Write(setting.name, TextOf(setting, value));
}

bool TZVOptions::Set(const TStringSetting &setting, const QString &value) {
  return Write(setting.name, value);
}

bool TZVOptions::SetIfAbsent(const TFlagSetting &setting, bool value) {
  return WriteIfAbsent(setting.name, TextOf(setting, value));
}

bool TZVOptions::SetIfAbsent(const TIntegerSetting &setting, int value) {
  return WriteIfAbsent(setting.name, TextOf(setting, value));
}

bool TZVOptions::SetIfAbsent(const TStringSetting &setting, const QString &value) {
  return WriteIfAbsent(setting.name, value);
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

std::optional<TNamedAddresses> TZVOptions::List(const char *key) const {
  const auto values = m_store.KnownValues(Hive, key);
  return values ? std::optional(EntriesOf(*values)) : std::nullopt;
}

bool TZVOptions::SetList(const char *key, const TNamedAddresses &entries) {
  return m_store.ReplaceKey(Hive, key, ValuesOf(entries));
}

bool TZVOptions::EditLastOpenSites(const std::function<TNamedAddresses(const TNamedAddresses &)> &edit) {
  return m_store.EditKey(Hive, RegistryKey::LastOpenSites,
                         [edit](const QList<TRegistryValue> &values) { return ValuesOf(edit(EntriesOf(values))); });
}

std::optional<TNamedAddresses> TZVOptions::LastOpenSites() const {
  return List(RegistryKey::LastOpenSites);
}
std::optional<TNamedAddresses> TZVOptions::SearchEngines() const {
  return List(RegistryKey::SearchEngines);
}
std::optional<TNamedAddresses> TZVOptions::SearchBarEntries() const {
  return List(RegistryKey::SearchBar);
}
std::optional<TNamedAddresses> TZVOptions::QuickSearchEntries() const {
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

std::optional<QStringList> TZVOptions::PopupList() const {
  const auto values = m_store.KnownValues(Hive, RegistryKey::PopupHalvex);
  return values ? std::optional(PatternsOf(*values)) : std::nullopt;
}

bool TZVOptions::SetPopupList(const QStringList &patterns) {
  return m_store.ReplaceKey(Hive, RegistryKey::PopupHalvex, ValuesOf(patterns));
}

bool TZVOptions::EditPopupList(const std::function<void(QStringList &)> &edit) {
  return m_store.EditKey(Hive, RegistryKey::PopupHalvex, [edit](const QList<TRegistryValue> &values) {
    QStringList patterns = PatternsOf(values);
    edit(patterns);
    return ValuesOf(patterns);
  });
}

QStringList TZVOptions::BrowserHelperObjects() const {
  return m_store.Subkeys(Hive, RegistryKey::BrowserHelperObjects);
}

void TZVOptions::RemoveZvid() {
  if (Read("ZVID")) m_store.DeleteValue(Hive, RegistryKey::CurrentVersion, "ZVID");
}
