#include "config/options.h"

#include <algorithm>

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

QStringList TZVOptions::Lines(const char *key) const {
  QStringList lines;
  for (const TRegistryValue &value : m_store.Values(Hive, key)) lines.append(value.name + u'=' + value.data);
  return lines;
}

bool TZVOptions::SetLines(const char *key, const QStringList &lines) {
  QList<TRegistryValue> values;
  values.reserve(lines.size());
  for (const QString &line : lines) {
    const qsizetype equals = line.indexOf(u'=');
    values.append({line.left(equals), equals < 0 ? QString() : line.sliced(equals + 1)});
  }
  return m_store.ReplaceKey(Hive, key, values);
}

QStringList TZVOptions::LastOpenSites() const {
  return Lines(RegistryKey::LastOpenSites);
}
QStringList TZVOptions::SearchEngines() const {
  return Lines(RegistryKey::SearchEngines);
}
QStringList TZVOptions::SearchBarEntries() const {
  return Lines(RegistryKey::SearchBar);
}
QStringList TZVOptions::QuickSearchEntries() const {
  return Lines(RegistryKey::QuickSearch);
}
bool TZVOptions::SetLastOpenSites(const QStringList &lines) {
  return SetLines(RegistryKey::LastOpenSites, lines);
}
bool TZVOptions::SetSearchEngines(const QStringList &lines) {
  return SetLines(RegistryKey::SearchEngines, lines);
}
bool TZVOptions::SetSearchBarEntries(const QStringList &lines) {
  return SetLines(RegistryKey::SearchBar, lines);
}
bool TZVOptions::SetQuickSearchEntries(const QStringList &lines) {
  return SetLines(RegistryKey::QuickSearch, lines);
}

QStringList TZVOptions::PopupList() const {
  QStringList addresses;
  for (const TRegistryValue &value : m_store.Values(Hive, RegistryKey::PopupHalvex)) {
    // Looked for in the whole line, so that a pattern with another address in its query stays whole where it can. One
    // that is no address is kept without its value's name: written back it must still be itself.
    const QString line = value.name + u'=' + value.data;
    const QString address = AddressOfLine(line);
    const QString pattern = address.size() == line.size() ? value.data : address;
    if (!pattern.isEmpty()) addresses.append(pattern);
  }
  std::ranges::stable_sort(addresses,
                           [](const QString &a, const QString &b) { return a.compare(b, Qt::CaseInsensitive) < 0; });
  const auto repeated = std::ranges::unique(
      addresses, [](const QString &a, const QString &b) { return a.compare(b, Qt::CaseInsensitive) == 0; });
  addresses.erase(repeated.begin(), repeated.end());
  return addresses;
}

bool TZVOptions::SetPopupList(const QStringList &addresses) {
  QList<TRegistryValue> values;
  values.reserve(addresses.size());
  for (const QString &address : addresses) {
    const QString name = "url" + QString::number(values.size() + 1);
    const bool isLine = address.startsWith(name + u'=');
    values.append({name, isLine ? address.sliced(name.size() + 1) : address});
  }
  return m_store.ReplaceKey(Hive, RegistryKey::PopupHalvex, values);
}

QStringList TZVOptions::BrowserHelperObjects() const {
  return m_store.Subkeys(Hive, RegistryKey::BrowserHelperObjects);
}

void TZVOptions::RemoveZvid() {
  if (Read("ZVID")) m_store.DeleteValue(Hive, RegistryKey::CurrentVersion, "ZVID");
}

QString TZVOptions::AddressOfLine(const QString &line) {
  for (const char *start : {"=http://", "=https://"}) {
    const qsizetype equals = line.indexOf(QLatin1String(start));
    if (equals >= 0) return line.sliced(equals + 1);
  }
  return line;
}
