#pragma once

#include <QObject>

class QMainWindow;
class QToolBar;
class TAddressBox;
class TBusyIndicator;
class TCommands;

// The plain tool bar and the address band of the main window.
class TMainToolbars final : public QObject {
  Q_OBJECT

 public:
  // Texts are markers; the window's translation replaces them.
  TMainToolbars(QMainWindow *window, TCommands &commands);

  [[nodiscard]] QToolBar *Toolbar() const { return m_toolbar; }
  [[nodiscard]] QToolBar *AddressBand() const { return m_addressBand; }
  [[nodiscard]] TAddressBox &Address() const { return *m_address; }
  [[nodiscard]] TBusyIndicator &Busy() const { return *m_busy; }
  void ShowGo(bool show);

 private:
  void FillToolbar(TCommands &commands);
  void FillAddressBand();

  QToolBar *m_toolbar;
  QToolBar *m_addressBand;
  TAddressBox *m_address;
  TBusyIndicator *m_busy;
  QAction *m_go = nullptr;
};
