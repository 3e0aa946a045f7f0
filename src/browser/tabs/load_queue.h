#pragma once

#include <QList>
#include <QObject>
#include <QPointer>
#include <QTimer>

class TAddress;
class TBrowserTab;
class TTabStrip;
struct TTabRecord;

// Opens the pages of many tabs a few at a time, so that the window answers while they come. The page in front comes
// first, the others in the order in which they were given; a tab that the user turns to is next. A tab that is closed,
// or that is sent elsewhere meanwhile, drops out.
class TLoadQueue final : public QObject {
  Q_OBJECT

 public:
  // Pages that load at the same time. The page in front does not wait for others, so now and then it is one more.
  static constexpr int AtOnce = 4;
  // Milliseconds after which a page that is still loading no longer keeps others waiting.
  static constexpr int LongestHold = 8000;

  // `tabs` must live as long as events are handled. Nothing is opened before the event loop turns.
  explicit TLoadQueue(TTabStrip &tabs, QObject *parent = nullptr);

  // The tab shows `address` at once and opens it when its turn comes. What is no page (an empty text, a script, an
  // address of another program) is shown and never opened. A tab that waits already gets the new address.
  void Navigate(TBrowserTab *tab, const TAddress &address);
  // The tab becomes that of the record, and opens its page when the user turns to it.
  void Wait(TBrowserTab *tab, const TTabRecord &record);
  // The user has turned to the tab: if it waits, its page is next.
  void Wake(TBrowserTab *tab);
  // Pages still to come: those that wait and those that are loading.
  [[nodiscard]] int ToCome() const;
  // What is loading goes on; of the others each opens when the user turns to its tab or refreshes it.
  void Stop();

 Q_SIGNALS:
  void ToComeChanged(int pages);

 private:
  struct TEntry {
    QPointer<TBrowserTab> tab;
    bool stopped = false;
  };

  [[nodiscard]] qsizetype PlaceOf(const TBrowserTab *tab) const;
  void StartNext();
  void StartActive();
  bool Start(qsizetype place);
  void Finish(QTimer *hold);
  void ForgetClosed();
  void Tell();

  TTabStrip &m_tabs;
  QList<TEntry> m_waiting;
  QList<QTimer *> m_holds;  // one for each page that is loading
  QTimer m_turn{this};      // starts one page in each turn of the event loop
  QTimer m_dwell{this};
  int m_told = 0;
};
