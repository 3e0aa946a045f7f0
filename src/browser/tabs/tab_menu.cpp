#include "browser/tabs/tab_menu.h"

#include <QMenu>

#include "browser/tabs/browser_tab.h"
#include "browser/tabs/close_all_tabs.h"
#include "browser/tabs/tab_strip.h"
#include "config/language.h"

namespace {

void ToggleLock(TBrowserTab *tab) {
  // A page that has not come yet could not be opened in a locked tab, so it is locked once it is there.
  if (!tab->Locked() && (tab->Announced() || tab->LockPending())) {
    tab->SetLockPending(!tab->LockPending());
  } else {
    tab->SetLocked(!tab->Locked());
  }
}

void ToggleStickyName(TBrowserTab *tab) {
  if (tab->StickyName().isEmpty()) {
    tab->AskStickyName();
  } else {
    tab->SetStickyName(QString());
  }
}

}  // namespace

TTabMenu::TTabMenu(TActions &actions, TTabStrip &tabs, TCloseAllTabs &closeAll)
    : m_actions(actions), m_tabs(tabs), m_closeAll(closeAll) {
  ConnectItems();
  // The menu hides before the chosen item's command runs; the target is let go of after that.
  connect(
      Menu(), &QMenu::aboutToHide, this, [this] { m_opened = false; }, Qt::QueuedConnection);
  connect(actions.Menu(TMenu::ThisTab), &QMenu::aboutToShow, this, &TTabMenu::PrepareForActive);
  connect(&tabs.Pages(), &TZVPageControl::TabMenuRequested, this,
          [this](QWidget *page, const QPoint &position) { Open(static_cast<TBrowserTab *>(page), position); });
}

void TTabMenu::ConnectItems() {
  On(TCommand::TabLocked, this, ToggleLock);
  On(TCommand::TabName, this, ToggleStickyName);
  On(TCommand::TabSpared, this, [](TBrowserTab *tab) { tab->SetHideFromCloseAll(!tab->HideFromCloseAll()); });
  On(TCommand::TabKeptAwake, this, [](TBrowserTab *tab) { tab->SetKeptAwake(!tab->KeptAwake()); });
  On(TCommand::TabHome, this, [](TBrowserTab *tab) { tab->NavigateStored(); });
  On(TCommand::TabStop, this, [](TBrowserTab *tab) { tab->Stop(); });
  On(TCommand::TabRefresh, this, [](TBrowserTab *tab) { tab->Refresh(); });
  On(TCommand::TabCloseAll, this, [this](TBrowserTab *) { m_closeAll.CloseAll(false); });
  On(TCommand::TabCloseAllKeepCurrent, this, [this](TBrowserTab *tab) { m_closeAll.KeepOnly(tab); });
  On(TCommand::TabCloseAllShowList, this, [this](TBrowserTab *) { m_closeAll.ShowList(); });
  On(TCommand::TabClose, this, [this](TBrowserTab *tab) { m_tabs.CloseByUser(tab); });
}

void TTabMenu::Open(TBrowserTab *tab, const QPoint &globalPosition) {
  m_target = tab;
  m_opened = true;
  if (TBrowserTab *target = TabUnderPopup()) {
    Prepare(target);
    Menu()->popup(globalPosition);
  }
}

void TTabMenu::PrepareForActive() {
  m_opened = false;
  if (TBrowserTab *target = TabUnderPopup()) Prepare(target);
}

TBrowserTab *TTabMenu::TabUnderPopup() {
  m_tabs.CloseHiddenTabs();
  TBrowserTab *tab = m_opened ? m_target.data() : m_tabs.GetActivePage();
  return tab != nullptr && tab->Browser() != nullptr ? tab : nullptr;
}

void TTabMenu::Prepare(TBrowserTab *tab) {
  const TLanguage &language = m_tabs.Environment().language;
  m_actions[TCommand::TabName]->setText(tab->StickyName().isEmpty() ? language.Global("StickyNameSet")
                                                                    : language.Global("StickyNameClear"));
  m_actions[TCommand::TabSpared]->setChecked(tab->HideFromCloseAll());
  m_actions[TCommand::TabKeptAwake]->setChecked(tab->KeptAwake());
  m_actions[TCommand::TabHome]->setEnabled(!tab->Url().isEmpty());
  m_actions[TCommand::TabStop]->setEnabled(tab->Busy());
  m_actions[TCommand::TabLocked]->setChecked(tab->Locked() || tab->LockPending());
}
