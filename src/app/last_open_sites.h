#pragma once

#include <QObject>
#include <QSet>
#include <QTimer>

#include "app/kept_tabs.h"

class TBrowserTab;
class TTabStrip;

// Keeps the open tabs for a start in mode "Last". They are written when the window closes; and while the program runs
// in that mode they are followed, so that even a killed program finds all of them again, as they were.
// Where the start could not read the store its pages were not opened; what is kept then stays for a later start.
class TLastOpenSites final : public QObject {
  Q_OBJECT

 public:
  // `window` is the number that no other running process has.
  TLastOpenSites(TTabStrip &tabs, TRegistryStore &store, int window, QObject *parent);

  // What the windows that are gone have left, in the order in which it is opened at start.
  [[nodiscard]] QList<TKeptTabs::TKeptTab> Take() { return m_kept.Take(); }

  // The pages of the start are there: from now on the list may be written.
  void Begin();
  // Begins to follow the tabs; nothing is written before (a half-restored strip would overwrite the list).
  void Follow();
  void StopFollowing();
  // Writes what has changed, at once.
  void Write();
  // Leaves nothing, as every mode but "Last" does.
  void Clear();

 private:
  void WriteSoon();
  [[nodiscard]] QList<TKeptTabs::TOpenTab> OpenTabs() const;

  TTabStrip &m_tabs;
  TRegistryStore &m_store;
  TKeptTabs m_kept;
  bool m_mayWrite = false;
  bool m_mustLeave = false;  // what is stored was not read
  QTimer m_delay;
  QTimer m_calm;                        // for what changes without end, as by scrolling
  QSet<quint64> m_changed;              // the ids of tabs that are to be told anew
  QHash<quint64, QString> m_addresses;  // as they were told last
};
