#include "app/tab_commands.h"

#include <QActionGroup>
#include <QApplication>
#include <QClipboard>
#include <QMenu>
#include <QShortcut>

#include "actions/commands.h"
#include "browser/tabs/auto_refresh.h"
#include "browser/tabs/browser_tab.h"
#include "browser/tabs/close_all_tabs.h"
#include "browser/tabs/tab_menu.h"
#include "browser/tabs/tab_strip.h"
#include "config/options.h"
#include "search/address_bar.h"
#include "search/address_search.h"

TTabCommands::TTabCommands(QWidget *window, TCommands &commands, TTabStrip &tabs, TCloseAllTabs &closeAll,
                           TTabMenu &tabMenu, TAutoRefresh &autoRefresh, TAddressBar &address, TAddressSearch &search)
    : QObject(window),
      m_window(window),
      m_commands(commands),
      m_tabs(tabs),
      m_closeAll(closeAll),
      m_tabMenu(tabMenu),
      m_address(address),
      m_search(search) {
  ConnectOpening();
  ConnectClosing();
  ConnectWalking();
  ConnectPosition();
  autoRefresh.FillMenu(commands.Menu(TMenu::AutoRefresh));
  connect(&autoRefresh, &TAutoRefresh::Tick, &tabs, &TTabStrip::RefreshAll);
  MakeTabListMenu(commands.Menu(TMenu::TabList), tabs);
  QMenu *thisTab = commands.Menu(TMenu::ThisTab);
  thisTab->addActions(tabMenu.Menu()->actions());
  connect(thisTab, &QMenu::aboutToShow, this, [this] { m_tabMenu.PrepareForActive(); });
}

void TTabCommands::ConnectOpening() {
  connect(m_commands[TCommand::NewBlank], &QAction::triggered, this, &TTabCommands::NewBlank);
  connect(&m_tabs.Pages(), &TZVPageControl::EmptyStripDoubleClicked, this, &TTabCommands::NewBlank);
  connect(m_commands[TCommand::NewHome], &QAction::triggered, this, [this] { m_tabs.NewTab()->GoHome(); });
  connect(m_commands[TCommand::NewCurrent], &QAction::triggered, this, [this] {
    const TBrowserTab *current = m_tabs.GetActivePage();
    if (current == nullptr) return;
    const QString address = current->GetLocationUrl();
    m_tabs.NewTab()->Navigate(address);
  });
  connect(m_commands[TCommand::NewClipboard], &QAction::triggered, this, &TTabCommands::NewFromClipboard);
  connect(m_commands.Menu(TMenu::NewTab), &QMenu::aboutToShow, this, &TTabCommands::UpdateClipboardItem);

  TTabSettings &settings = m_tabs.Environment().settings;
  m_commands[TCommand::OpenNewInForeground]->setChecked(settings.openNewInForeground);
  connect(m_commands[TCommand::OpenNewAtEnd], &QAction::toggled, this,
          [&settings](bool on) { settings.openNewAtEnd = on; });
  connect(m_commands[TCommand::OpenNewInForeground], &QAction::toggled, this,
          [&settings](bool on) { settings.openNewInForeground = on; });
}

void TTabCommands::NewBlank() {
  const TBrowserTab *current = m_tabs.GetActivePage();
  const QString address = current != nullptr ? current->GetLocationUrl() : QString();
  TBrowserTab *tab = m_tabs.NewTab();
  switch (m_tabs.Environment().settings.newAction) {
    case 0:
      tab->MakeBlank();
      break;
    case 1:
      tab->Navigate(address);
      break;
    default:
      tab->GoHome();
      break;
  }
  if (m_address.isVisible()) m_address.FocusAll();
}

void TTabCommands::UpdateClipboardItem() {
  m_commands[TCommand::NewClipboard]->setEnabled(!QApplication::clipboard()->text().isEmpty());
}

void TTabCommands::NewFromClipboard() {
  const QString text = QApplication::clipboard()->text().trimmed();
  if (!text.isEmpty()) m_search.Open(text, true);
}

void TTabCommands::ConnectClosing() {
  connect(m_commands[TCommand::CloseTab], &QAction::triggered, &m_tabs, &TTabStrip::CloseActive);
  connect(m_commands[TCommand::CloseAll], &QAction::triggered, this, [this] { m_closeAll.CloseAll(false); });
  connect(m_commands[TCommand::CloseAllKeepCurrent], &QAction::triggered, this, [this] { m_closeAll.KeepCurrent(); });
  connect(m_commands[TCommand::CloseAllShowList], &QAction::triggered, this, [this] { m_closeAll.ShowList(); });
}

void TTabCommands::ConnectWalking() {
  connect(m_commands[TCommand::NextTab], &QAction::triggered, this, [this] { m_tabs.ShowAdjacent(true); });
  connect(m_commands[TCommand::PreviousTab], &QAction::triggered, this, [this] { m_tabs.ShowAdjacent(false); });
  connect(m_commands[TCommand::FocusStrip], &QAction::triggered, &m_tabs.Pages(), &TZVPageControl::FocusStrip);
  constexpr int Digits = 9;
  for (int digit = 1; digit <= Digits; ++digit) {
    auto *key = new QShortcut(QKeySequence(Qt::CTRL | static_cast<Qt::Key>(Qt::Key_0 + digit)), m_window);
    connect(key, &QShortcut::activated, this, [this, digit] { m_tabs.ActivateVisible(digit); });
  }
}

void TTabCommands::ConnectPosition() {
  auto *side = new QActionGroup(this);
  auto *rows = new QActionGroup(this);
  side->addAction(m_commands[TCommand::TabsBelow]);
  side->addAction(m_commands[TCommand::TabsAbove]);
  rows->addAction(m_commands[TCommand::TabsOneRow]);
  rows->addAction(m_commands[TCommand::TabsSeveralRows]);
  const auto place = [this](bool down) {
    m_tabs.Pages().SetTabsDown(down);
    TZVOptions(m_tabs.Environment().store).Set(Setting::TabsDown, down);
    ArrangePositionItems();
  };
  const auto wrap = [this](bool several) {
    m_tabs.Pages().SetMultipleLines(several);
    TZVOptions(m_tabs.Environment().store).Set(Setting::MultipleLines, several);
    ArrangePositionItems();
  };
  connect(m_commands[TCommand::TabsBelow], &QAction::triggered, this, [place] { place(true); });
  connect(m_commands[TCommand::TabsAbove], &QAction::triggered, this, [place] { place(false); });
  connect(m_commands[TCommand::TabsOneRow], &QAction::triggered, this, [wrap] { wrap(false); });
  connect(m_commands[TCommand::TabsSeveralRows], &QAction::triggered, this, [wrap] { wrap(true); });
}

void TTabCommands::ArrangePositionItems() {
  const bool down = m_tabs.Pages().TabsDown();
  const bool several = m_tabs.Pages().MultipleLines();
  m_commands[TCommand::TabsBelow]->setChecked(down);
  m_commands[TCommand::TabsAbove]->setChecked(!down);
  m_commands[TCommand::TabsOneRow]->setChecked(!several);
  m_commands[TCommand::TabsSeveralRows]->setChecked(several);

  // The items stand in the order of the window: what the tabs are nearest to comes first.
  QList<QAction *> places = {m_commands[TCommand::TabsBelow], m_commands[TCommand::TabsAbove]};
  QList<QAction *> rows = {m_commands[TCommand::TabsSeveralRows], m_commands[TCommand::TabsOneRow]};
  if (!down) {
    std::reverse(places.begin(), places.end());
    std::reverse(rows.begin(), rows.end());
  }
  QMenu *menu = m_commands.Menu(TMenu::TabPosition);
  menu->clear();
  menu->addActions(places);
  menu->addSeparator();
  menu->addActions(rows);
}
