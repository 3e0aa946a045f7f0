#include "browser/tabs/leave_question.h"

#include <algorithm>
#include <optional>
#include <QEventLoop>
#include <QScopedValueRollback>

#include "browser/tabs/browser_tab.h"

namespace {

bool MayGo(const TBrowserTab *tab) {
  THalvexBrowser *browser = tab != nullptr ? tab->Browser() : nullptr;
  if (browser == nullptr) return true;
  std::optional<bool> answer;
  QEventLoop wait;
  const auto take = [&](bool mayGo) {
    answer = mayGo;
    wait.quit();
  };
  QObject::connect(browser, &THalvexBrowser::LeaveAnswered, &wait, take);
  QObject::connect(browser, &QObject::destroyed, &wait, [&] { take(true); });
  browser->AskToLeave();
  if (!answer) wait.exec();
  return answer.value_or(true);
}

}  // namespace

TLeaveQuestion::TTabs TLeaveQuestion::Staying(const TTabs &tabs) {
  if (m_asking) return tabs;
  const QScopedValueRollback asking(m_asking, true);
  TTabs staying;
  for (const QPointer<TBrowserTab> &tab : tabs) {
    if (!MayGo(tab)) staying.append(tab);
  }
  return staying;
}

bool TLeaveQuestion::AllMayGo(const TTabs &tabs) {
  if (m_asking) return false;
  const QScopedValueRollback asking(m_asking, true);
  const auto stays = std::ranges::find_if_not(tabs, [](const auto &tab) { return MayGo(tab); });
  if (stays == tabs.end()) return true;
  for (const QPointer<TBrowserTab> &tab : tabs) {
    if (tab && tab->Browser() != nullptr) tab->Browser()->ForgetLeave();
  }
  return false;
}
