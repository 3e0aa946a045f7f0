#pragma once

class QMainWindow;
class QToolBar;
class QWidget;
class TActions;
class TAddressBar;
class TAddressLabel;
class TBusyIndicator;
class TFrameUpdates;
class TLanguage;
class TSettings;
class TToolbarPanel;

// The tool bar and the address band of the main window. Their texts are markers, for the window to translate.
class TMainToolbars final {
 public:
  // Makes both bars as children of `window`, which places them. The address band takes `address` as its own.
  TMainToolbars(QMainWindow *window, const TActions &actions, TAddressBar *address, TFrameUpdates &updates,
                const TLanguage &language, TSettings &settings);

  [[nodiscard]] QToolBar *AddressBand() const { return m_addressBand; }
  [[nodiscard]] TAddressLabel &AddressLabel() const { return *m_addressLabel; }
  [[nodiscard]] TToolbarPanel &ToolbarPanel() const { return *m_panel; }
  [[nodiscard]] TBusyIndicator &Busy() const { return *m_busy; }

  // Leaves the settings that the bars obey in the store.
  void Save();

 private:
  void FillAddressBand(const TActions &actions, TAddressBar *address);

  TSettings &m_settings;
  QToolBar *m_addressBand;
  TAddressLabel *m_addressLabel;
  TBusyIndicator *m_busy;
  TToolbarPanel *m_panel;
};
