#pragma once

#include <QHash>
#include <QObject>

class THalvexBrowser;
class THistoryStore;
class TBrowserTab;
class TTabStrip;

// Writes down in the history which pages the tabs have loaded, and their titles as they come.
class TVisitRecorder final : public QObject {
  Q_OBJECT

 public:
  TVisitRecorder(TTabStrip &tabs, THistoryStore &history, QObject *parent = nullptr);

 Q_SIGNALS:
  // The page's content has begun to arrive, in any tab.
  void Navigated(TBrowserTab *tab, const QString &address);

 private:
  // What was written last for a tab.
  struct TLast {
    QString address;
    QString title;
  };

  void FollowTabs();
  void Follow(TBrowserTab *tab);
  void OnLoaded(THalvexBrowser *browser, const QString &address);
  void OnTitle(THalvexBrowser *browser);

  TTabStrip &m_tabs;
  THistoryStore &m_history;
  QHash<THalvexBrowser *, TLast> m_last;
};
