#pragma once

#include <QList>
#include <QObject>

#include "browser/tabs/tab_record.h"

class TActions;
class TBrowserTab;
class TLoadQueue;
class TTabStrip;

// The tabs that were closed last, to be opened again: with name, lock, history and place in the strip. They last as
// long as the window. Blank tabs and windows that never showed are not kept.
class TClosedTabs final : public QObject {
  Q_OBJECT

 public:
  // Closings that can be taken back.
  static constexpr int Most = 25;

  // All references must outlive this object.
  TClosedTabs(TActions &actions, TTabStrip &tabs, TLoadQueue &queue);

  // While one lives, what is closed comes back together.
  class TTogether final {
   public:
    explicit TTogether(TClosedTabs &closed);
    ~TTogether();
    TTogether(const TTogether &) = delete;
    TTogether &operator=(const TTogether &) = delete;

   private:
    TClosedTabs &m_closed;
  };

  // The tab is about to lose its page. What is closed the usual way is remembered without this.
  void Remember(TBrowserTab *tab);
  // What was closed last comes back to its place. Of several tabs the one that was in front loads, the others when the
  // user turns to them.
  void Reopen();
  // Nothing more is remembered.
  void StopFollowing();

 private:
  struct TClosed {
    TTabRecord record{};
    int position = 0;
    bool inFront = false;
  };
  using TClosing = QList<TClosed>;

  void Keep(TClosing &&closing);
  [[nodiscard]] TBrowserTab *FreeTab() const;

  TActions &m_actions;
  TTabStrip &m_tabs;
  TLoadQueue &m_queue;
  QList<TClosing> m_closings;  // the last one last
  TClosing m_together;
  int m_togetherDepth = 0;
  const TBrowserTab *m_inFront = nullptr;  // when the closing of several began; only compared
};
