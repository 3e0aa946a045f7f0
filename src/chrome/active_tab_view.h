#pragma once

#include <QObject>

class QMainWindow;
class TAddressBar;
class TBrowserTab;
class TBusyIndicator;
class TFrameUpdates;
class TIEZoneMgr;
class TMainStatusBar;
class TPageCommands;
class TStoppedPopups;
class TTabStrip;

// What the frame shows of the tab in front: address, title, what its page says, progress, security, and which commands
// it can do.
class TActiveTabView final : public QObject {
  Q_OBJECT

 public:
  // All must outlive this object.
  TActiveTabView(QMainWindow *window, TTabStrip &tabs, TPageCommands &commands, TAddressBar &address,
                 TMainStatusBar &status, TBusyIndicator &busy, TStoppedPopups &stopped, const TIEZoneMgr &zones,
                 TFrameUpdates &updates);

  // Shows everything anew.
  void Show();

 private:
  void ShowTitle(const QString &title);
  // Soon, with what else the page changes.
  void GatherIndicators();
  void ShowIndicators(TBrowserTab *tab);
  void ShowStoppedPopups();

  QMainWindow *m_window;
  TTabStrip &m_tabs;
  TPageCommands &m_commands;
  TAddressBar &m_address;
  TMainStatusBar &m_status;
  TBusyIndicator &m_busy;
  TStoppedPopups &m_stopped;
  const TIEZoneMgr &m_zones;
  TFrameUpdates &m_updates;
  bool m_indicatorsChanged = false;  // since they were shown last
};
