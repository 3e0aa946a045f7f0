#include "browser/tabs/leave_question.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <QEventLoop>
#include <QScopedValueRollback>

#include "browser/tabs/browser_tab.h"

namespace {

THalvexBrowser *BrowserOf(const TBrowserTab *tab) {
  return tab != nullptr ? tab->Browser() : nullptr;
}

bool Asks(const TBrowserTab *tab) {
  return BrowserOf(tab) != nullptr && tab->Browser()->HasOpenQuestion();
}

// Unless one of them is looked at already.
void ShowFirst(const TLeaveQuestion::TTabs &tabs) {
  if (std::ranges::any_of(tabs, [](const auto &tab) { return Asks(tab) && tab->isVisible(); })) return;
  const auto first = std::ranges::find_if(tabs, [](const auto &tab) { return Asks(tab); });
  if (first != tabs.end()) Q_EMIT(*first)->Browser()->BringToFrontRequested();
}

}  // namespace

void TLeaveQuestion::Ask(TBrowserTab *tab, const std::function<void(bool mayGo)> &done) {
  THalvexBrowser *browser = BrowserOf(tab);
  if (browser == nullptr) return;
  m_single.removeAll(nullptr);
  if (m_single.contains(tab)) return ShowFirst({tab});
  m_single.append(tab);

  struct TAnswer {
    std::optional<bool> mayGo{};
    bool isLate = false;
  };
  const auto answer = std::make_shared<TAnswer>();
  auto *listener = new QObject(browser);
  const auto finish = [this, tab, done](bool mayGo) {
    m_single.removeOne(tab);
    done(mayGo);
  };
  QObject::connect(browser, &THalvexBrowser::QuestionOpenChanged, listener, [tab](bool) { ShowFirst({tab}); });
  QObject::connect(browser, &THalvexBrowser::LeaveAnswered, listener, [=](bool mayGo) {
    if (answer->mayGo) return;
    answer->mayGo = mayGo;
    listener->deleteLater();
    // The page is at work in this very call.
    if (answer->isLate)
      QMetaObject::invokeMethod(
          tab, [finish, mayGo] { finish(mayGo); }, Qt::QueuedConnection);
  });
  browser->AskToLeave();
  answer->isLate = true;
  if (answer->mayGo) finish(*answer->mayGo);
}

TLeaveQuestion::TTabs TLeaveQuestion::Collect(const TTabs &tabs, bool endWithFirst) {
  TTabs staying;
  QEventLoop wait;
  const auto isDone = [&] { return m_open.isEmpty() || (endWithFirst && !staying.isEmpty()); };
  const auto take = [&](TBrowserTab *tab, bool mayGo) {
    if (!m_open.removeOne(tab)) return;
    if (!mayGo) staying.append(tab);
    if (isDone()) return wait.quit();
    ShowFirst(m_open);
  };
  m_open.clear();
  for (const QPointer<TBrowserTab> &tab : tabs) {
    THalvexBrowser *browser = BrowserOf(tab);
    if (browser == nullptr) continue;
    m_open.append(tab);
    QObject::connect(browser, &THalvexBrowser::LeaveAnswered, &wait,
                     [&take, one = tab.data()](bool mayGo) { take(one, mayGo); });
    QObject::connect(browser, &THalvexBrowser::QuestionOpenChanged, &wait, [this] { ShowFirst(m_open); });
    // However the tab goes, its page does not stay.
    QObject::connect(browser, &QObject::destroyed, &wait, [&] {
      m_open.removeIf([](const auto &other) { return BrowserOf(other) == nullptr; });
      if (isDone()) wait.quit();
    });
  }
  const TTabs asked = m_open;
  for (const QPointer<TBrowserTab> &tab : asked) {
    if (THalvexBrowser *browser = BrowserOf(tab)) browser->AskToLeave();
  }
  m_wait = &wait;
  if (!isDone()) wait.exec();
  // The program is about to end in another way, and leaves the tabs as they are.
  if (!isDone()) staying += m_open;
  m_open.clear();
  return staying;
}

TLeaveQuestion::TTabs TLeaveQuestion::Staying(const TTabs &tabs) {
  if (m_asking) {
    ShowFirst(m_open);
    return tabs;
  }
  const QScopedValueRollback asking(m_asking, true);
  return Collect(tabs, false);
}

void TLeaveQuestion::GiveUp() {
  if (m_wait) m_wait->quit();
}

bool TLeaveQuestion::AllMayGo(const TTabs &tabs) {
  if (m_asking) {
    ShowFirst(m_open);
    return false;
  }
  const QScopedValueRollback asking(m_asking, true);
  if (Collect(tabs, true).isEmpty()) return true;
  for (const QPointer<TBrowserTab> &tab : tabs) {
    if (THalvexBrowser *browser = BrowserOf(tab)) browser->ForgetLeave();
  }
  return false;
}
