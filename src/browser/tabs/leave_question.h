#pragma once

#include <QList>
#include <QPointer>

class TBrowserTab;

// Asks the pages of tabs, one after the other, whether they may be closed. A page with unsaved input has its question
// shown, in front, and the user may keep the page; the others answer by themselves.
class TLeaveQuestion final {
 public:
  using TTabs = QList<QPointer<TBrowserTab>>;  // any of them may go while the others are asked

  // Those that stay; all of them while another question is still open. Runs the event loop until all have answered.
  [[nodiscard]] TTabs Staying(const TTabs &tabs);
  // True when none stays. The first one that does ends the asking, and the others are as if they had not been asked.
  [[nodiscard]] bool AllMayGo(const TTabs &tabs);

 private:
  bool m_asking = false;
};
