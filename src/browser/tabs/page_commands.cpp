#include "browser/tabs/page_commands.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>

#include "actions/actions.h"
#include "browser/tabs/browser_tab.h"
#include "browser/tabs/home_page.h"
#include "browser/tabs/tab_strip.h"

namespace {

// The text box that has the keyboard, when there is one outside the page.
QLineEdit *FocusedEdit() {
  QWidget *focus = QApplication::focusWidget();
  // An editable combo box has the keyboard in its line edit's stead.
  if (const auto *box = qobject_cast<QComboBox *>(focus)) return box->lineEdit();
  return qobject_cast<QLineEdit *>(focus);
}

}  // namespace

struct TPageCommands::TSimple {
  TCommand command;
  TOperation operation;
  bool followsFocus = false;  // else it is always about the tab
};

const TPageCommands::TSimple TPageCommands::SimpleCommands[] = {
    {TCommand::SaveAs, &THalvexBrowser::SaveAs},
    {TCommand::PageSetup, &THalvexBrowser::PageSetup},
    {TCommand::Print, &THalvexBrowser::Print},
    {TCommand::PrintNow, &THalvexBrowser::PrintWithoutAsking},
    {TCommand::PrintPreview, &THalvexBrowser::PrintPreview},
    {TCommand::Properties, &THalvexBrowser::Properties},
    {TCommand::Find, &THalvexBrowser::FindOnPage, true},
    {TCommand::ViewSource, &THalvexBrowser::ViewSource},
    {TCommand::ZoomIn, &THalvexBrowser::ZoomIn, true},
    {TCommand::ZoomOut, &THalvexBrowser::ZoomOut, true},
    {TCommand::ZoomReset, &THalvexBrowser::ResetZoom, true},
};

struct TPageCommands::TFont {
  TCommand command;
  int zoom;
};

// In menu order: the item at position 4 - zoom.
const TPageCommands::TFont TPageCommands::Fonts[] = {
    {TCommand::FontLargest, 4}, {TCommand::FontLarge, 3},    {TCommand::FontMedium, 2},
    {TCommand::FontSmaller, 1}, {TCommand::FontSmallest, 0},
};

TPageCommands::TPageCommands(TActions &actions, TTabStrip &tabs) : m_actions(actions), m_tabs(tabs) {
  ConnectSimple();
  ConnectNavigation();
  ConnectClipboard();
  ConnectFonts();
}

THalvexBrowser *TPageCommands::Browser() const {
  TBrowserTab *tab = m_tabs.GetActivePage();
  return tab != nullptr ? tab->Browser() : nullptr;
}

THalvexBrowser *TPageCommands::FocusedBrowser() const {
  THalvexBrowser *focused = m_focused ? m_focused() : nullptr;
  return focused != nullptr ? focused : Browser();
}

void TPageCommands::ConnectSimple() {
  for (const TSimple &row : SimpleCommands) {
    connect(m_actions[row.command], &QAction::triggered, this, [this, &row] {
      if (THalvexBrowser *browser = row.followsFocus ? FocusedBrowser() : Browser()) (browser->*row.operation)();
    });
  }
  for (const bool forward : {true, false}) {
    connect(m_actions[forward ? TCommand::FindNext : TCommand::FindPrevious], &QAction::triggered, this,
            [this, forward] {
              if (THalvexBrowser *browser = FocusedBrowser()) browser->FindNext(forward);
            });
  }
}

void TPageCommands::ConnectNavigation() {
  using TTabOperation = void (TBrowserTab::*)();
  const std::pair<TCommand, TTabOperation> rows[] = {
      {TCommand::Back, &TBrowserTab::GoBack},     {TCommand::Forward, &TBrowserTab::GoForward},
      {TCommand::Home, &TBrowserTab::GoHome},     {TCommand::Stop, &TBrowserTab::Stop},
      {TCommand::Refresh, &TBrowserTab::Refresh},
  };
  for (const auto &[command, operation] : rows) {
    connect(m_actions[command], &QAction::triggered, this, [this, operation = operation] {
      if (TBrowserTab *tab = m_tabs.GetActivePage()) (tab->*operation)();
    });
  }
  // The command passes the cache by while Ctrl is held, which is not meant by this key.
  connect(m_actions[TCommand::RefreshPlain], &QAction::triggered, this, [this] {
    if (TBrowserTab *tab = m_tabs.GetActivePage()) tab->Reload(false);
  });
  connect(m_actions[TCommand::RefreshCompletely], &QAction::triggered, this, [this] {
    if (TBrowserTab *tab = m_tabs.GetActivePage()) tab->Reload(true);
  });
  connect(m_actions[TCommand::StopAll], &QAction::triggered, &m_tabs, &TTabStrip::StopAll);
  connect(m_actions[TCommand::RefreshAll], &QAction::triggered, &m_tabs, &TTabStrip::RefreshAll);
  connect(m_actions[TCommand::SetHomePage], &QAction::triggered, this, [this] {
    if (const TBrowserTab *tab = m_tabs.GetActivePage()) {
      HomePage::Choose(m_tabs.Environment().store, tab->GetLocationUrl());
    }
  });
}

void TPageCommands::ConnectClipboard() {
  struct TRoute {
    TCommand command;
    TOperation page;
    void (*edit)(QLineEdit *);
    bool needsSelection = false;
  };
  // The text box that has the keyboard comes first, if it can do it, then the page that has it, then the tab's.
  static constexpr TRoute Routes[] = {
      {TCommand::Undo, &THalvexBrowser::Undo, [](QLineEdit *edit) { edit->undo(); }},
      {TCommand::Redo, &THalvexBrowser::Redo, [](QLineEdit *edit) { edit->redo(); }},
      {TCommand::Cut, &THalvexBrowser::Cut, [](QLineEdit *edit) { edit->cut(); }, true},
      {TCommand::Copy, &THalvexBrowser::Copy, [](QLineEdit *edit) { edit->copy(); }, true},
      {TCommand::Paste, &THalvexBrowser::Paste, [](QLineEdit *edit) { edit->paste(); }},
      {TCommand::SelectAll, &THalvexBrowser::SelectAll, [](QLineEdit *edit) { edit->selectAll(); }},
  };
  for (const TRoute &route : Routes) {
    connect(m_actions[route.command], &QAction::triggered, this, [this, &route] {
      QLineEdit *edit = FocusedEdit();
      if (edit != nullptr && (edit->hasSelectedText() || !route.needsSelection)) {
        route.edit(edit);
      } else if (THalvexBrowser *browser = FocusedBrowser()) {
        (browser->*route.page)();
      }
    });
  }
}

void TPageCommands::ConnectFonts() {
  for (const TFont &font : Fonts) {
    connect(m_actions[font.command], &QAction::triggered, this, [this, zoom = font.zoom] {
      if (THalvexBrowser *browser = Browser()) browser->SetZoom(zoom);
    });
  }
  connect(m_actions.Menu(TMenu::FontSize), &QMenu::aboutToShow, this, [this] {
    const THalvexBrowser *browser = Browser();
    if (browser == nullptr) return;
    for (const TFont &font : Fonts) m_actions[font.command]->setChecked(font.zoom == browser->Zoom());
  });
}

bool TPageCommands::UpdateFor(TBrowserTab *tab) {
  bool isChanged = false;
  const auto enable = [&](TCommand command, bool enabled) {
    isChanged = isChanged || m_actions[command]->isEnabled() != enabled;
    m_actions[command]->setEnabled(enabled);
  };
  enable(TCommand::Back, tab != nullptr && tab->BackEnabled());
  enable(TCommand::Forward, tab != nullptr && tab->ForwardEnabled());
  // Disabled when nothing loads, and while a page has the whole screen, so that Esc then belongs to the page.
  const bool pageOnly = tab != nullptr && tab->Browser() != nullptr && tab->Browser()->HasPageFullScreen();
  enable(TCommand::Stop, tab != nullptr && tab->Busy() && !pageOnly);
  return isChanged;
}
