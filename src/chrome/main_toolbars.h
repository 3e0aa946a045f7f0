#pragma once

#include <QObject>

class QMainWindow;
class QToolBar;
class TAddressBar;
class TBusyIndicator;
class TCommands;

// The plain tool bar and the address band of the main window.
class TMainToolbars final : public QObject {
  Q_OBJECT

 public:
  // Takes the address bar as its own. Texts are markers; the window's translation replaces them.
  TMainToolbars(QMainWindow *window, TCommands &commands, TAddressBar *address);

  [[nodiscard]] QToolBar *Toolbar() const { return m_toolbar; }
  [[nodiscard]] QToolBar *AddressBand() const { return m_addressBand; }
  [[nodiscard]] TAddressBar &Address() const { return *m_address; }
  [[nodiscard]] TBusyIndicator &Busy() const { return *m_busy; }
  void ShowGo(bool show);

 private:
  void FillToolbar(TCommands &commands);
  void FillAddressBand();

  QToolBar *m_toolbar;
  QToolBar *m_addressBand;
  TAddressBar *m_address;
  TBusyIndicator *m_busy;
  QAction *m_go = nullptr;
};
