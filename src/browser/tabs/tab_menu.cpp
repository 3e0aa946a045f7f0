#include "browser/tabs/tab_menu.h"

#include <QMenu>

#include "browser/tabs/browser_tab.h"
#include "browser/tabs/close_all_tabs.h"
#include "browser/tabs/tab_strip.h"
#include "config/language.h"
#include "ui/shown_text.h"

struct TTabMenu::TItem {
  const char *name;  // nullptr: a separator
  TTextKey text;
  THandler handler;
  const char *icon;
  int key;  // Qt key, 0 for none
  bool checkable;
};

const TTabMenu::TItem TTabMenu::Items[] = {
    {"pmTabLocked", TTextKey{"MAIN", "TabLocked"}, &TTabMenu::ToggleLock, nullptr, 0, true},
    {"pmStickyTitle", TTextKey{"GLOBAL", "StickyNameSet"}, &TTabMenu::ToggleStickyName, nullptr, Qt::Key_F9, false},
    {"pmHideFromCloseAll", TTextKey{"MAIN", "TabHideFromCloseAll"}, &TTabMenu::ToggleSpared, nullptr, 0, true},
    {nullptr, {}, nullptr, nullptr, 0, false},
    {"pmTabHome", TTextKey{"MAIN", "TabHome"}, &TTabMenu::ReturnHome, ":/icons/home.svg", 0, false},
    {"pmTabStop", TTextKey{"MAIN", "TabStop"}, &TTabMenu::Stop, ":/icons/stop.svg", 0, false},
    {"pmTabRefresh", TTextKey{"MAIN", "TabRefresh"}, &TTabMenu::Refresh, ":/icons/refresh.svg", 0, false},
    {nullptr, {}, nullptr, nullptr, 0, false},
    {"pmTabCloseAllDefault", TTextKey{"MAIN", "CloseAllDefault"}, &TTabMenu::CloseAllDefault, nullptr, 0, false},
    {"pmTabCloseAllKeepCurrent", TTextKey{"MAIN", "CloseAllKeepCurrent"}, &TTabMenu::CloseAllKeepCurrent, nullptr, 0,
     false},
    {"pmTabCloseAllShowList", TTextKey{"MAIN", "CloseAllShowList"}, &TTabMenu::CloseAllShowList, nullptr, 0, false},
    {"pmTabClose", TTextKey{"MAIN", "TabClose"}, &TTabMenu::CloseTab, ":/icons/close_tab.svg", 0, false},
};

TTabMenu::TTabMenu(QWidget *window, TTabStrip &tabs, TCloseAllTabs &closeAll)
    : QObject(window), m_window(window), m_tabs(tabs), m_closeAll(closeAll), m_menu(new QMenu(window)) {
  m_menu->setObjectName(QStringLiteral("pmTab"));
  for (const TItem &item : Items) {
    if (item.name == nullptr) {
      m_menu->addSeparator();
      continue;
    }
    QAction *action = MakeItem(item.name, tabs.Environment().language.Text(item.text), item.icon, item.key,
                               [this, handler = item.handler](TBrowserTab *tab) { (this->*handler)(tab); });
    action->setCheckable(item.checkable);
    m_menu->addAction(action);
  }
  // The menu hides before the chosen item's command runs; the target is let go of after that.
  connect(
      m_menu, &QMenu::aboutToHide, this, [this] { m_opened = false; }, Qt::QueuedConnection);
}

void TTabMenu::Open(TBrowserTab *tab, const QPoint &globalPosition) {
  m_target = tab;
  m_opened = true;
  if (TBrowserTab *target = TabUnderPopup()) {
    Prepare(target);
    m_menu->popup(globalPosition);
  }
}

QAction *TTabMenu::MakeItem(const char *name, const QString &text, const char *icon, int key,
                            const std::function<void(TBrowserTab *)> &handler) {
  auto *action = new QAction(text, m_menu);
  action->setObjectName(QString::fromLatin1(name));
  if (icon != nullptr) action->setIcon(QIcon(QString::fromLatin1(icon)));
  if (key != 0) {
    action->setShortcut(QKeySequence(key));
    m_window->addAction(action);  // so that the key works while the menu is closed
  }
  connect(action, &QAction::triggered, this, [this, handler] {
    if (TBrowserTab *tab = TabUnderPopup()) handler(tab);
  });
  return action;
}

void TTabMenu::AddItem(const char *name, const QString &text, const char *icon, int key,
                       const std::function<void(TBrowserTab *)> &handler) {
  if (m_addedEnd == nullptr) m_addedEnd = m_menu->insertSeparator(Item("pmTabCloseAllDefault"));
  m_menu->insertAction(m_addedEnd, MakeItem(name, text, icon, key, handler));
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

QAction *TTabMenu::Item(const char *name) const {
  return m_menu->findChild<QAction *>(QString::fromLatin1(name));
}

void TTabMenu::Prepare(TBrowserTab *tab) {
  const TLanguage &language = m_tabs.Environment().language;
  Item("pmStickyTitle")
      ->setText(tab->StickyName().isEmpty() ? language.Global("StickyNameSet") : language.Global("StickyNameClear"));
  Item("pmHideFromCloseAll")->setChecked(tab->HideFromCloseAll());
  Item("pmTabHome")->setEnabled(!tab->Url().isEmpty());
  Item("pmTabStop")->setEnabled(tab->Busy());
  Item("pmTabLocked")->setChecked(tab->Locked() || tab->LockPending());
}

void TTabMenu::ToggleLock(TBrowserTab *tab) {
  // A page that has not come yet could not be opened in a locked tab, so it is locked once it is there.
  if (!tab->Locked() && (tab->Announced() || tab->LockPending())) {
    tab->SetLockPending(!tab->LockPending());
  } else {
    tab->SetLocked(!tab->Locked());
  }
}

void TTabMenu::ToggleStickyName(TBrowserTab *tab) {
  if (tab->StickyName().isEmpty()) {
    tab->AskStickyName();
  } else {
    tab->SetStickyName(QString());
  }
}

void TTabMenu::ToggleSpared(TBrowserTab *tab) {
  tab->SetHideFromCloseAll(!tab->HideFromCloseAll());
}

void TTabMenu::ReturnHome(TBrowserTab *tab) {
  tab->NavigateStored();
}

void TTabMenu::Stop(TBrowserTab *tab) {
  tab->Stop();
}

void TTabMenu::Refresh(TBrowserTab *tab) {
  tab->Refresh();
}

void TTabMenu::CloseAllDefault(TBrowserTab *) {
  m_closeAll.CloseAll(false);
}

void TTabMenu::CloseAllKeepCurrent(TBrowserTab *) {
  m_closeAll.KeepCurrent();
}

void TTabMenu::CloseAllShowList(TBrowserTab *) {
  m_closeAll.ShowList();
}

void TTabMenu::CloseTab(TBrowserTab *tab) {
  if (!m_tabs.ClosingLocked()) tab->Close();
}

void MakeTabListMenu(QMenu *menu, TTabStrip &tabs) {
  QObject::connect(menu, &QMenu::aboutToShow, &tabs, [menu, &tabs] {
    menu->clear();
    tabs.CloseHiddenTabs();
    for (int i = 0; i < tabs.TabCount(); ++i) {
      TBrowserTab *tab = tabs.Tab(i);
      // A window that a page asked for and that has not passed its test yet cannot be shown, so it has no item.
      if (!tabs.Pages().IsPageVisible(tab)) continue;
      QAction *item = menu->addAction(MenuText(tab->ListCaption()));
      item->setData(tab->GetLocationUrl());
      item->setToolTip(PlainTip(tab->GetLocationUrl()));
      item->setIcon(tabs.IconOf(tab));
      item->setCheckable(true);
      item->setChecked(tab == tabs.GetActivePage());
      QObject::connect(item, &QAction::triggered, &tabs, [tab = QPointer<TBrowserTab>(tab), &tabs] {
        // The strip may have changed while the menu was open.
        tabs.MakeMeActiveTab(tabs.Pages().IndexOf(tab));
      });
    }
  });
  menu->setToolTipsVisible(true);
}
