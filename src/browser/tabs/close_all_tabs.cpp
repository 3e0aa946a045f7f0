#include "browser/tabs/close_all_tabs.h"

#include <algorithm>
#include <QPointer>
#include <QWidget>

#include "browser/tabs/browser_tab.h"
#include "browser/tabs/close_all_dialog.h"
#include "browser/tabs/closed_tabs.h"
#include "browser/tabs/tab_strip.h"
#include "config/language.h"
#include "config/settings.h"
#include "ui/confirm_dialog.h"

int TCloseAllTabs::HowMany() const {
  const QList<TBrowserTab *> tabs = m_tabs.Tabs();
  return int(std::ranges::count_if(
      tabs, [this](TBrowserTab *tab) { return !tab->HideFromCloseAll() && m_tabs.Pages().IsPageVisible(tab); }));
}

bool TCloseAllTabs::Confirmed() const {
  TSettings &options = m_tabs.Environment().settings;
  if (!options.Get(Setting::ConfirmCloseAll)) return true;
  const TLanguage &language = m_tabs.Environment().language;
  // A language file of the user's own may leave the number out.
  const QString prompt =
      language.Text("CONFIRM", "CloseAllPrompt").replace(QLatin1String("%1"), QString::number(HowMany()));
  const TAnswer answer = ShowConfirm(m_owner, {.caption = language.Text("CONFIRM", "CloseAll"),
                                               .firstLine = prompt,
                                               .secondText = language.Text("CONFIRM", "Proceed"),
                                               .ok = language.Global("Yes"),
                                               .cancel = language.Global("No"),
                                               .checkBox = language.Text("CONFIRM", "DontAsk")});
  // The box counts whatever the answer was: from now on close-all does not ask.
  if (answer.checked) options.Set(Setting::ConfirmCloseAll, false);
  return answer.accepted;
}

TLeaveQuestion::TTabs TCloseAllTabs::CloseAll(bool skipConfirmation) {
  if (!skipConfirmation && !Confirmed()) return {};
  if (m_tabs.ClosingLocked()) return {};
  m_tabs.CloseHiddenTabs();

  // A page that the user keeps when it asks is spared like one that is marked so.
  TLeaveQuestion::TTabs asked;
  for (TBrowserTab *tab : m_tabs.Tabs()) {
    if (!tab->HideFromCloseAll()) asked.append(tab);
  }
  const TLeaveQuestion::TTabs staying = m_tabs.Leaving().Staying(asked);
  if (m_tabs.ClosingLocked()) return staying;
  // One that has come while the pages were asked is not among those that the user meant.
  const auto isSpared = [&](TBrowserTab *tab) { return !asked.contains(tab) || staying.contains(tab); };

  const TClosedTabs::TTogether together(m_closed);
  const QList<TBrowserTab *> tabs = m_tabs.Tabs();
  if (const auto spared = std::ranges::find_if(tabs, isSpared); spared != tabs.end()) {
    m_tabs.Activate(*spared);
  } else if (TBrowserTab *first = m_tabs.Tab(0)) {
    m_tabs.Pages().SetPageVisible(first, true);
    m_tabs.Activate(first);
    m_closed.Remember(first);
    first->ResetToBlank();
  }
  TBrowserTab *kept = m_tabs.GetActivePage();
  // A tab that goes takes the empty windows of its page along.
  for (auto tab = tabs.crbegin(); tab != tabs.crend(); ++tab) {
    if (*tab != kept && !isSpared(*tab) && m_tabs.TabCount() > 1) (*tab)->Close();
  }
  return staying;
}

void TCloseAllTabs::KeepOnly(TBrowserTab *tab) {
  const QPointer<TBrowserTab> current(tab);
  if (!current) return;
  m_tabs.Activate(tab);
  const bool before = current->HideFromCloseAll();
  current->SetHideFromCloseAll(true);
  CloseAll(false);
  if (!current) return;
  current->SetHideFromCloseAll(before);
  m_tabs.Activate(current);
}

void TCloseAllTabs::ShowList() {
  // The list shows what the strip shows; a tab that a page asked for and that was not let in yet has no line.
  QStringList lines;
  QList<QPointer<TBrowserTab>> listed;
  m_tabs.CloseHiddenTabs();
  for (TBrowserTab *tab : m_tabs.Tabs()) {
    if (!m_tabs.Pages().IsPageVisible(tab)) continue;
    lines.append(tab->ListCaption());
    listed.append(tab);
  }
  const QPointer<TfrmCloseAll> dialog(new TfrmCloseAll(m_tabs.Environment().language, lines, m_owner));
  const bool accepted = dialog->exec() == QDialog::Accepted;
  if (!dialog) return;  // The owner has gone and has taken the dialog along.
  const QList<int> ticked = dialog->Ticked();
  delete dialog;
  if (!accepted) return;
  TLeaveQuestion::TTabs chosen;
  for (const int position : ticked) chosen.append(listed.at(position));
  const TLeaveQuestion::TTabs staying = m_tabs.Leaving().Staying(chosen);
  const TClosedTabs::TTogether together(m_closed);
  for (const QPointer<TBrowserTab> &tab : chosen) {
    if (!m_tabs.ClosingLocked() && tab && !staying.contains(tab)) tab->Close();
  }
}
