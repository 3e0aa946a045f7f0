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

 private:
  // What was written last for a tab.
  struct TLast {
    QString address;
    QString title;
  };

  void Follow(TBrowserTab *tab);
  void OnLoaded(THalvexBrowser *browser, const QString &address);
  void OnTitle(THalvexBrowser *browser);

  THistoryStore &m_history;
  QHash<THalvexBrowser *, TLast> m_last;
};
