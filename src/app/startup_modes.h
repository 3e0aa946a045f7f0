#pragma once

#include <QObject>

class TCommands;
class TLastOpenSites;
class TPageGroups;
class TRegistryStore;

// The choice of what opens when the program starts (StartupMode): the home page, a blank one, the pages of the last
// time, or a page group, which is asked for. While it is the pages of the last time, they are kept up to date.
class TStartupModes final : public QObject {
  Q_OBJECT

 public:
  // All references must live as long as events are handled.
  TStartupModes(TCommands &commands, TPageGroups &groups, TLastOpenSites &lastSites, TRegistryStore &store,
                QObject *parent);

  // Begins or ceases to keep the open pages, as the mode says; not before the pages of this start are there.
  void FollowPages();
  [[nodiscard]] static bool IsLast(TRegistryStore &store);

 private:
  void Choose(const QString &mode);
  void ShowChosen();

  TCommands &m_commands;
  TPageGroups &m_groups;
  TLastOpenSites &m_lastSites;
  TRegistryStore &m_store;
};
