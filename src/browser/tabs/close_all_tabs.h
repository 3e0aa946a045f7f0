#pragma once

#include <QFont>

class QWidget;
class TTabStrip;

// Closing many tabs at once. Tabs that are marked as spared stay; when none is, one blank tab remains.
class TCloseAllTabs final {
 public:
  TCloseAllTabs(QWidget *owner, TTabStrip &tabs) : m_owner(owner), m_tabs(tabs) {}

  // Asks first when ConfirmCloseAll is set, unless `skipConfirmation`.
  void CloseAll(bool skipConfirmation);
  // Spares the active tab for this once.
  void KeepCurrent();
  // Lets the user tick which tabs go.
  void ShowList();

 private:
  [[nodiscard]] bool Confirmed() const;

  QWidget *m_owner;
  TTabStrip &m_tabs;
};
