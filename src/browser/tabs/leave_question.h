#pragma once

#include <functional>
#include <QList>
#include <QPointer>

class QEventLoop;
class TBrowserTab;

// Asks the pages of tabs whether they may be closed, all at the same time: those that do not answer are given up after
// five seconds together. A page with unsaved input has its question shown in its own tab, where the user may keep it;
// of several, one after the other comes to the front. Whatever else the user does meanwhile goes on.
class TLeaveQuestion final {
 public:
  using TTabs = QList<QPointer<TBrowserTab>>;  // any of them may go while the others are asked

  // Asks one. `done` comes at once where the page has nothing to lose, else when it is decided; not at all when the tab
  // has gone or is being asked already.
  void Ask(TBrowserTab *tab, const std::function<void(bool mayGo)> &done);
  // Those that stay; all of them while another such question is still open. Runs the event loop until all have
  // answered.
  [[nodiscard]] TTabs Staying(const TTabs &tabs);
  // True when none stays. The first one that does ends the asking, and the others are as if they had not been asked.
  [[nodiscard]] bool AllMayGo(const TTabs &tabs);
  // Ends the waiting of both: who has not answered stays.
  void GiveUp();

 private:
  [[nodiscard]] TTabs Collect(const TTabs &tabs, bool endWithFirst);

  TTabs m_single;  // that are being asked alone
  TTabs m_open;    // of those that are asked together, the ones that have not answered
  bool m_asking = false;
  QPointer<QEventLoop> m_wait;
};
