#include "chrome/side_bar_view.h"

#include <QApplication>

#include "actions/actions.h"
#include "browser/strip/page_control.h"
#include "browser/tabs/browser_tab.h"
#include "browser/tabs/tab_strip.h"
#include "chrome/full_screen.h"
#include "chrome/side_bar/side_bar_frame.h"
#include "config/settings.h"

TSideBarView::TSideBarView(QWidget *window, TZVPageControl *pages, TActions &actions, TTabStrip &tabs,
                           TFullScreen &fullScreen, const TLanguage &language, TSettings &settings)
    : m_actions(actions),
      m_tabs(tabs),
      m_settings(settings),
      m_bar(new THalvexBar(language)),
      m_frame(new TSideBarFrame(m_bar, pages, language, window)) {
  m_bar->Hold(true);
  connect(&m_firstPage, &TFirstPageWait::Over, m_bar, [this] { m_bar->Hold(false); });
  connect(actions[TCommand::ViewHalvexBar], &QAction::triggered, this, [this](bool on) {
    m_settings.Set(Setting::ViewHalvexBar, on);
    if (on) m_bar->FocusPage();
  });
  connect(m_bar, &THalvexBar::PageChosen, this, &TSideBarView::TurnTo);
  connect(m_bar, &THalvexBar::LeaveWanted, this, &TSideBarView::LeaveBar);
  connect(m_bar, &THalvexBar::CloseWanted, this, [this] { m_settings.Set(Setting::ViewHalvexBar, false); });
  connect(m_frame, &TSideBarFrame::CloseWanted, this, [this] { m_settings.Set(Setting::ViewHalvexBar, false); });
  connect(m_frame, &TSideBarFrame::OpenWanted, this, [this] {
    m_bar->Hold(false);  // what the user opens is not waited for
    m_settings.Set(Setting::ViewHalvexBar, true);
  });
  connect(m_frame, &TSideBarFrame::WidthChosen, this,
          [this](int width) { m_settings.Set(Setting::HalvexBarWidth, width); });
  connect(&fullScreen, &TFullScreen::BarsChanged, m_frame,
          [this, &fullScreen] { m_frame->SetPagesOnly(fullScreen.IsPageFullScreen()); });
  settings.Apply(Setting::HalvexBarWidth, this,
                 [this] { m_frame->SetBarWidth(m_settings.Get(Setting::HalvexBarWidth)); });
  settings.Apply(Setting::ViewHalvexBar, this, [this] { Show(m_settings.Get(Setting::ViewHalvexBar)); });
}

void TSideBarView::AddPage(const TSideBarPage &page) {
  m_bar->AddPage(page);
  m_bar->SetCurrent(m_settings.Get(Setting::HalvexBarPage));
  connect(page.command, &QAction::triggered, this, [this, number = page.number] {
    TurnTo(number);
    m_settings.Set(Setting::ViewHalvexBar, true);
    m_bar->FocusPage();
  });
}

void TSideBarView::Begin() {
  m_firstPage.Begin();
}

void TSideBarView::Save() {
  m_settings.Keep(Setting::HBAutoExpand);
  m_settings.Keep(Setting::HalvexBarWidth);
  m_settings.Keep(Setting::ViewHalvexBar);
}

void TSideBarView::Show(bool open) {
  m_actions[TCommand::ViewHalvexBar]->setChecked(open);
  if (open == m_frame->IsOpen()) return;
  const QWidget *focused = QApplication::focusWidget();
  const bool hadKeyboard = focused != nullptr && m_bar->isAncestorOf(focused);
  m_frame->SetOpen(open);
  if (!open && hadKeyboard) LeaveBar();
}

void TSideBarView::TurnTo(int page) {
  // What the user turns to is not waited for.
  if (m_frame->IsOpen()) m_bar->Hold(false);
  m_bar->SetCurrent(page);
  m_settings.Set(Setting::HalvexBarPage, page);
}

void TSideBarView::LeaveBar() {
  if (TBrowserTab *tab = m_tabs.GetActivePage()) tab->setFocus();
}
