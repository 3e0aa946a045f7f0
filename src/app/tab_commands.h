#pragma once

#include <QObject>

class TAddressBar;
class TAddressSearch;
class TAutoRefresh;
class TCloseAllTabs;
class TCommands;
class TTabMenu;
class TTabStrip;

// The commands that open, close, walk and arrange tabs.
class TTabCommands final : public QObject {
  Q_OBJECT

 public:
  TTabCommands(QWidget *window, TCommands &commands, TTabStrip &tabs, TCloseAllTabs &closeAll, TTabMenu &tabMenu,
               TAutoRefresh &autoRefresh, TAddressBar &address, TAddressSearch &search);

  // The four tab-position items, the ones that hold now in front, and their check marks.
  void ArrangePositionItems();

 private:
  void ConnectOpening();
  void ConnectClosing();
  void ConnectWalking();
  void ConnectPosition();
  void NewBlank();
  void NewFromClipboard();
  void UpdateClipboardItem();

  QWidget *m_window;
  TCommands &m_commands;
  TTabStrip &m_tabs;
  TCloseAllTabs &m_closeAll;
  TTabMenu &m_tabMenu;
  TAddressBar &m_address;
  TAddressSearch &m_search;
};
