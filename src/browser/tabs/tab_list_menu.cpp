#include "browser/tabs/tab_list_menu.h"

#include <QMenu>
#include <QPointer>

#include "browser/tabs/browser_tab.h"
#include "browser/tabs/tab_strip.h"
#include "ui/shown_text.h"

TTabListMenu::TTabListMenu(QMenu *menu, TTabStrip &tabs) : m_menu(menu), m_tabs(tabs) {
  menu->setToolTipsVisible(true);
  connect(menu, &QMenu::aboutToShow, this, &TTabListMenu::Fill);
}

void TTabListMenu::Fill() {
  m_menu->clear();
  m_tabs.CloseHiddenTabs();
  for (TBrowserTab *tab : m_tabs.Tabs()) {
    // A window that a page asked for and that has not passed its test yet cannot be shown, so it has no item.
    if (!m_tabs.Pages().IsPageVisible(tab)) continue;
    QAction *item = m_menu->addAction(MenuText(tab->ListCaption()));
    item->setData(tab->GetLocationUrl());
    item->setToolTip(PlainTip(tab->GetLocationUrl()));
    item->setIcon(m_tabs.IconOf(tab));
    item->setCheckable(true);
    item->setChecked(tab == m_tabs.GetActivePage());
    connect(item, &QAction::triggered, this, [this, tab = QPointer<TBrowserTab>(tab)] {
      // The strip may have changed while the menu was open.
      m_tabs.MakeMeActiveTab(m_tabs.Pages().IndexOf(tab));
    });
  }
}
