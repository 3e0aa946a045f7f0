#pragma once

#include <QObject>

class TActions;
class TCloseAllTabs;
class TSettings;
class TTabStrip;

// The commands that open, close and walk the tabs.
class TTabCommands final : public QObject {
  Q_OBJECT

 public:
  // All must outlive this object.
  TTabCommands(TActions &actions, TTabStrip &tabs, TCloseAllTabs &closeAll, TSettings &settings);

  // Leaves the settings that opening tabs obeys in the store.
  void Save();

 Q_SIGNALS:
  // A new tab is there, and its address is what the user will type next.
  void AddressWanted();
  // A text from the clipboard is to be opened in a new tab as if it had been typed.
  void TextToOpen(const QString &text);

 private:
  void ConnectOpening();
  void ConnectClosing();
  void ConnectWalking();
  void NewBlank();
  void NewFromClipboard();
  void UpdateClipboardItem();

  TActions &m_actions;
  TTabStrip &m_tabs;
  TCloseAllTabs &m_closeAll;
  TSettings &m_settings;
};
