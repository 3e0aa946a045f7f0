#pragma once

#include "browser/tabs/leave_question.h"

class QWidget;
class TClosedTabs;
class TTabStrip;

// Closing many tabs at once. Tabs that are marked as spared stay; when none is, one blank tab remains.
class TCloseAllTabs final {
 public:
  // What is closed here can be taken back from `closed` in one.
  TCloseAllTabs(QWidget *owner, TTabStrip &tabs, TClosedTabs &closed)
      : m_owner(owner), m_tabs(tabs), m_closed(closed) {}

  // Asks first when ConfirmCloseAll is set, unless `skipConfirmation`. The tabs whose pages the user kept when they
  // asked him.
  TLeaveQuestion::TTabs CloseAll(bool skipConfirmation);
  // Spares `tab`, which becomes the active one, for this once.
  void KeepOnly(TBrowserTab *tab);
  // Lets the user tick which tabs go.
  void ShowList();

 private:
  [[nodiscard]] bool Confirmed() const;
  [[nodiscard]] int HowMany() const;

  QWidget *m_owner;
  TTabStrip &m_tabs;
  TClosedTabs &m_closed;
};
