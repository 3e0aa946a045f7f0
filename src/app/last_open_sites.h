#pragma once

#include <QObject>
#include <QStringList>
#include <QTimer>

#include "config/named_address.h"

class TTabStrip;
class TRegistryStore;

// The list of pages that a start in mode "Last" opens again. It is written when the window closes; and while the
// program runs in that mode it follows the open tabs, so that even a killed program finds all of them again.
class TLastOpenSites final : public QObject {
  Q_OBJECT

 public:
  TLastOpenSites(TTabStrip &tabs, TRegistryStore &store, QObject *parent);

  // One address per saved tab, in the order in which they are opened at start (the list read from its end).
  [[nodiscard]] static QStringList Read(TRegistryStore &store);

  // Begins to follow the tabs; nothing is written before (a half-restored strip would overwrite the list).
  void Follow();
  void StopFollowing();
  // Writes the list as it stands, last tab first; with `close` every page is closed on the way.
  void Write(bool close);
  // Leaves an empty list, as every mode but "Last" does.
  static void Clear(TRegistryStore &store);

 private:
  [[nodiscard]] TNamedAddresses Sites(bool close) const;

  TTabStrip &m_tabs;
  TRegistryStore &m_store;
  QTimer m_delay;
  TNamedAddresses m_written;
};
