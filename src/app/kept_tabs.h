#pragma once

#include <functional>
#include <optional>
#include <QHash>
#include <QList>
#include <QSet>
#include <QString>

#include "browser/tabs/tab_record.h"
#include "config/named_address.h"

class TRegistryStore;

// The open tabs of all windows as the store keeps them: in "Last Open Sites" a name and an address for each, and beside
// it what else there is to know of them. Each process has one window and a number of its own; what it writes replaces
// what it wrote before, and leaves the parts of the others.
//
// The value name in "Last Open Sites" is "url" and the tab's position in its strip, from 1. Windows beyond the first
// count on from a hundred thousand for each, so that no two have the same name.
class TKeptTabs final {
 public:
  struct TKeptTab {
    QString address{};
    std::optional<TTabRecord> record{};  // nothing where only the address was kept
    bool inFront = false;
  };
  struct TOpenTab {
    quint64 id = 0;    // the same from one call to the next
    int position = 0;  // in the strip, from 1
    QString address{};
    std::optional<TTabRecord> record{};  // nothing where it is as it was told last
  };

  // `window` is this process's number, from 1; `isRunning` tells whether another one's process is there.
  TKeptTabs(TRegistryStore &store, int window, std::function<bool(int)> isRunning);

  // The tabs of all windows that are not running, in the order of the windows and their strips. They are this window's
  // from the next Write on.
  [[nodiscard]] QList<TKeptTab> Take();
  // What an earlier process of this number left could not be read in time: it is given a number that no process has,
  // and so comes back with the next Take of any window. False when it cannot be read yet.
  bool LeaveStored();
  // Writes what has changed since the last call, in one piece; the tabs stand in their order. False when the store
  // refused it, and then it is all to be told once more.
  bool Write(const QList<TOpenTab> &tabs, quint64 front);
  // Whatever the store has by now of this window: the next Write replaces it all, and must be told all.
  void Forget() { m_hasWritten = false; }
  // Leaves nothing of this window and of those that are not running.
  bool Clear();

 private:
  [[nodiscard]] QList<int> WindowsWithTabs() const;
  [[nodiscard]] bool IsLeft(int window) const;
  [[nodiscard]] bool WriteAddresses(const TNamedAddresses &own);
  [[nodiscard]] bool WriteRecords(const QList<TOpenTab> &tabs, const QString &order, quint64 front);
  bool WithoutWindows(const QList<int> &windows);

  TRegistryStore &m_store;
  int m_window;
  std::function<bool(int)> m_isRunning;
  QList<int> m_taken;  // windows whose tabs are this one's now, and still to be removed from the store
  // What was written last.
  bool m_hasWritten = false;
  TNamedAddresses m_addresses;
  QSet<quint64> m_ids;
  QString m_order;
  quint64 m_front = 0;
};
