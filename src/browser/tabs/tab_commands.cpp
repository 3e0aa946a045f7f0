#include "browser/tabs/tab_commands.h"

#include <QApplication>
#include <QClipboard>
#include <QMenu>

#include "actions/actions.h"
#include "browser/tabs/browser_tab.h"
#include "browser/tabs/close_all_tabs.h"
#include "browser/tabs/tab_strip.h"
#include "config/settings.h"

namespace {

// By their position in the strip, from 1; the last one is for the last tab, however many there are.
constexpr TCommand NumberedTabs[] = {
    TCommand::FirstTab, TCommand::SecondTab,  TCommand::ThirdTab,  TCommand::FourthTab, TCommand::FifthTab,
    TCommand::SixthTab, TCommand::SeventhTab, TCommand::EighthTab, TCommand::LastTab,
};

}  // namespace

TTabCommands::TTabCommands(TActions &actions, TTabStrip &tabs, TCloseAllTabs &closeAll, TSettings &settings)
    : m_actions(actions), m_tabs(tabs), m_closeAll(closeAll), m_settings(settings) {
  ConnectOpening();
  ConnectClosing();
  ConnectWalking();
}

void TTabCommands::ConnectOpening() {
  connect(m_actions[TCommand::NewBlank], &QAction::triggered, this, &TTabCommands::NewBlank);
  connect(&m_tabs.Pages(), &TZVPageControl::EmptyStripDoubleClicked, this, &TTabCommands::NewBlank);
  connect(m_actions[TCommand::NewHome], &QAction::triggered, this, [this] { m_tabs.NewTab()->GoHome(); });
  connect(m_actions[TCommand::NewCurrent], &QAction::triggered, this, [this] {
    const TBrowserTab *current = m_tabs.GetActivePage();
    if (current == nullptr) return;
    const QString address = current->AddressToSave();
    m_tabs.NewTab()->Navigate(address);
  });
  connect(m_actions[TCommand::NewClipboard], &QAction::triggered, this, &TTabCommands::NewFromClipboard);
  connect(m_actions.Menu(TMenu::NewTab), &QMenu::aboutToShow, this, &TTabCommands::UpdateClipboardItem);
}

void TTabCommands::NewBlank() {
  const TBrowserTab *current = m_tabs.GetActivePage();
  const QString address = current != nullptr ? current->AddressToSave() : QString();
  TBrowserTab *tab = m_tabs.NewTab();
  // A negative number counts as 0.
  switch (std::max(m_settings.Get(Setting::NewAction), 0)) {
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
  Q_EMIT AddressWanted();
}

void TTabCommands::UpdateClipboardItem() {
  m_actions[TCommand::NewClipboard]->setEnabled(!QApplication::clipboard()->text().isEmpty());
}

void TTabCommands::NewFromClipboard() {
  const QString text = QApplication::clipboard()->text().trimmed();
  if (!text.isEmpty()) Q_EMIT TextToOpen(text);
}

void TTabCommands::ConnectClosing() {
  connect(m_actions[TCommand::CloseTab], &QAction::triggered, &m_tabs, &TTabStrip::CloseActive);
  connect(m_actions[TCommand::CloseAll], &QAction::triggered, this, [this] { m_closeAll.CloseAll(false); });
  connect(m_actions[TCommand::CloseAllKeepCurrent], &QAction::triggered, this,
          [this] { m_closeAll.KeepOnly(m_tabs.GetActivePage()); });
  connect(m_actions[TCommand::CloseAllShowList], &QAction::triggered, this, [this] { m_closeAll.ShowList(); });
}

void TTabCommands::ConnectWalking() {
  connect(m_actions[TCommand::NextTab], &QAction::triggered, this, [this] { m_tabs.ShowAdjacent(true); });
  connect(m_actions[TCommand::PreviousTab], &QAction::triggered, this, [this] { m_tabs.ShowAdjacent(false); });
  connect(m_actions[TCommand::FocusStrip], &QAction::triggered, &m_tabs.Pages(), &TZVPageControl::FocusStrip);
  int number = 0;
  for (const TCommand command : NumberedTabs) {
    ++number;
    connect(m_actions[command], &QAction::triggered, this, [this, number] { m_tabs.ActivateVisible(number); });
  }
}

void TTabCommands::Save() {
  m_settings.Keep(Setting::LimitTitleLength);
}
