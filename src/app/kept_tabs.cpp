#include "app/kept_tabs.h"

#include <algorithm>
#include <QStringList>
#include <utility>

#include "config/options.h"
#include "config/registry_paths.h"
#include "store/registry_store.h"

namespace {

constexpr TRegistryHive Hive = TRegistryHive::CurrentUser;
constexpr int TabsOfAWindow = 100000;
// Beyond the numbers of processes.
constexpr int FirstOfNoProcess = 1001;
const QString NamePrefix = QStringLiteral("url");
// Values beside the records, which have numbers for names.
const QString OrderName = QStringLiteral("Order");
const QString FrontName = QStringLiteral("Front");

QString KeyOf(int window) {
  return QLatin1String(RegistryKey::OpenTabs) + u'\\' + QString::number(window);
}

QString NameOf(int window, int position) {
  return NamePrefix + QString::number((window - 1) * TabsOfAWindow + position);
}

// A name that is not of this kind was written by somebody else, and counts as the first window's.
int WindowOf(const TNamedAddress &site) {
  if (!site.name.startsWith(NamePrefix, Qt::CaseInsensitive)) return 1;
  const int number = QStringView(site.name).sliced(NamePrefix.size()).toInt();
  return number < 1 ? 1 : (number - 1) / TabsOfAWindow + 1;
}

// The records of one window, to be found by their addresses.
class TRecords final {
 public:
  TRecords(TRegistryStore &store, int window) {
    QHash<QString, QString> values;
    for (const TRegistryValue &value : store.Values(Hive, KeyOf(window))) values.insert(value.name, value.data);
    const QString front = values.value(FrontName);
    for (const QString &id : values.value(OrderName).split(u' ', Qt::SkipEmptyParts)) {
      if (auto record = TTabRecord::FromText(values.value(id))) {
        m_tabs.append({record->address, std::move(record), id == front});
      }
    }
  }

  // The list was written together with the records, unless somebody has changed it by hand: the first one of that
  // address is the one meant.
  TKeptTabs::TKeptTab Take(const TNamedAddress &site) {
    const QString webAddress = site.WebAddress();
    for (qsizetype i = m_next; i < m_tabs.size(); ++i) {
      const QString &address = m_tabs.at(i).address;
      if (address != site.address && address != webAddress) continue;
      if (i == m_next) return m_tabs.at(m_next++);
      return m_tabs.takeAt(i);
    }
    return {.address = webAddress};
  }

 private:
  QList<TKeptTabs::TKeptTab> m_tabs;
  qsizetype m_next = 0;  // those before have been taken
};

}  // namespace

TKeptTabs::TKeptTabs(TRegistryStore &store, int window, std::function<bool(int)> isRunning)
    : m_store(store), m_window(window), m_isRunning(std::move(isRunning)) {}

bool TKeptTabs::IsLeft(int window) const {
  return window == m_window || !m_isRunning(window);
}

QList<int> TKeptTabs::WindowsWithTabs() const {
  QList<int> windows;
  const TNamedAddresses sites = TZVOptions(m_store).LastOpenSites().value_or(TNamedAddresses());
  for (const TNamedAddress &site : sites) windows.append(WindowOf(site));
  for (const QString &key : m_store.Subkeys(Hive, QLatin1String(RegistryKey::OpenTabs))) windows.append(key.toInt());
  std::ranges::sort(windows);
  windows.erase(std::unique(windows.begin(), windows.end()), windows.end());
  return windows;
}

QList<TKeptTabs::TKeptTab> TKeptTabs::Take() {
  QList<TKeptTab> tabs;
  const TNamedAddresses sites = TZVOptions(m_store).LastOpenSites().value_or(TNamedAddresses());
  for (const int window : WindowsWithTabs()) {
    if (!IsLeft(window)) continue;
    m_taken.append(window);
    TRecords records(m_store, window);
    // The list is read from its end.
    for (auto site = sites.crbegin(); site != sites.crend(); ++site) {
      if (WindowOf(*site) != window) continue;
      TKeptTab tab = records.Take(*site);
      if (!tab.address.isEmpty()) tabs.append(std::move(tab));
    }
  }
  return tabs;
}

bool TKeptTabs::LeaveStored() {
  const auto records = m_store.KnownValues(Hive, KeyOf(m_window));
  const auto sites = TZVOptions(m_store).LastOpenSites();
  if (!records || !sites) return false;
  const QList<int> windows = WindowsWithTabs();
  int left = FirstOfNoProcess;
  while (windows.contains(left)) ++left;
  const bool isLeft = m_store.InTransaction([&] {
    return TZVOptions(m_store).EditLastOpenSites([self = m_window, left](TNamedAddresses known) {
      int position = 0;
      for (TNamedAddress &site : known) {
        if (WindowOf(site) == self) site.name = NameOf(left, ++position);
      }
      return known;
    }) && m_store.ReplaceKey(Hive, KeyOf(left), *records) &&
           m_store.DeleteKey(Hive, KeyOf(m_window));
  });
  if (isLeft) m_taken.clear();
  return isLeft;
}

bool TKeptTabs::Write(const QList<TOpenTab> &tabs, quint64 front) {
  TNamedAddresses own;
  QStringList order;
  for (auto tab = tabs.crbegin(); tab != tabs.crend(); ++tab) {
    own.append({NameOf(m_window, tab->position), tab->address});
    order.prepend(QString::number(tab->id));
  }
  const QString orderText = order.join(u' ');
  const bool isWritten = m_store.InTransaction(
      [&] { return WriteAddresses(own) && WriteRecords(tabs, orderText, front) && WithoutWindows(m_taken); });
  if (!isWritten) {
    m_hasWritten = false;
    return false;
  }
  m_taken.clear();
  m_hasWritten = true;
  m_addresses = std::move(own);
  m_order = orderText;
  m_front = front;
  m_ids.clear();
  for (const TOpenTab &tab : tabs) m_ids.insert(tab.id);
  return true;
}

bool TKeptTabs::WriteAddresses(const TNamedAddresses &own) {
  if (m_hasWritten && own == m_addresses) return true;
  const auto edit = [own, self = m_window, taken = m_taken, isRunning = m_isRunning](const TNamedAddresses &known) {
    // Read from the end, the windows come in the order of their numbers.
    TNamedAddresses sites;
    TNamedAddresses before;
    for (const TNamedAddress &site : known) {
      const int window = WindowOf(site);
      // This may be done much later than it was asked for: a process that has the number by then has its own tabs
      // there.
      if (window == self || (taken.contains(window) && !isRunning(window))) continue;
      (window < self ? before : sites).append(site);
    }
    return sites + own + before;
  };
  return TZVOptions(m_store).EditLastOpenSites(edit);
}

bool TKeptTabs::WriteRecords(const QList<TOpenTab> &tabs, const QString &order, quint64 front) {
  const QString key = KeyOf(m_window);
  // What stands there was written by an earlier process of this number.
  bool isGood = m_hasWritten || m_store.DeleteKey(Hive, key);
  QSet<quint64> gone = m_hasWritten ? m_ids : QSet<quint64>();
  for (const TOpenTab &tab : tabs) {
    gone.remove(tab.id);
    if (tab.record) isGood = isGood && m_store.Write(Hive, key, QString::number(tab.id), tab.record->ToText());
  }
  for (const quint64 id : std::as_const(gone)) {
    isGood = isGood && m_store.DeleteValue(Hive, key, QString::number(id));
  }
  if (!m_hasWritten || order != m_order) isGood = isGood && m_store.Write(Hive, key, OrderName, order);
  if (!m_hasWritten || front != m_front) {
    isGood = isGood && m_store.Write(Hive, key, FrontName, QString::number(front));
  }
  return isGood;
}

bool TKeptTabs::WithoutWindows(const QList<int> &windows) {
  bool isGood = true;
  for (const int window : windows) {
    if (window != m_window && IsLeft(window)) isGood = isGood && m_store.DeleteKey(Hive, KeyOf(window));
  }
  return isGood;
}

bool TKeptTabs::Clear() {
  QList<int> left;
  for (const int window : WindowsWithTabs()) {
    if (IsLeft(window)) left.append(window);
  }
  m_hasWritten = false;
  return m_store.InTransaction([&] {
    const bool isLeft = TZVOptions(m_store).EditLastOpenSites([left](TNamedAddresses sites) {
      sites.removeIf([&left](const TNamedAddress &site) { return left.contains(WindowOf(site)); });
      return sites;
    });
    return isLeft && WithoutWindows(left) && m_store.DeleteKey(Hive, KeyOf(m_window));
  });
}
