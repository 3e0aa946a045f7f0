#pragma once

#include <QObject>
#include <QPointer>

class QWidget;
class TActions;
class TAddress;
class TAddressBar;
class TBrowserTab;
class THistoryStore;
class TLanguage;
class TSearchLists;
class TSettings;
class TTabStrip;
class TVisitRecorder;

// Joins the address bar, the search lists and the history with the tabs: opens what was typed, files it once the page
// comes, and records what is visited. What it opens obeys the settings AddressNewWin, QuickSearchNewWin and
// SearchNewWin.
class TAddressSearch final : public QObject {
  Q_OBJECT

 public:
  // `window` is the owner of messages. All references must outlive this object, the tabs' own end excepted.
  TAddressSearch(QWidget *window, TActions &actions, TAddressBar &bar, TTabStrip &tabs, TSearchLists &lists,
                 THistoryStore &history);

  // Opens a typed text: as a quick search where it is one, else as the address that it is; in a new tab when the
  // setting for the one or the other, or `newTab`, says so. A quick search whose format has a fault opens nothing; the
  // user is told. False then.
  bool Open(const QString &text, bool newTab);
  // Opens an address that was typed elsewhere than in the bar, and files it as one; no setting is asked.
  void OpenAddress(const TAddress &address, bool newTab);
  // Puts the keyboard into the address bar, where it is shown.
  void EditAddress();
  // Leaves the settings that typed addresses obey in the store.
  void Save();

 private:
  void FileWhenItStarts(TBrowserTab *tab, const TAddress &address);
  void File(TBrowserTab *tab, const QString &address);
  void Record(TBrowserTab *tab);
  void OpenEngine(const QString &address);

  QWidget *m_window;
  const TLanguage &m_language;
  TAddressBar &m_bar;
  TTabStrip &m_tabs;
  TSettings &m_settings;
  TSearchLists &m_lists;
  TVisitRecorder *m_recorder;
  QPointer<QObject> m_typed;  // waits for the tab to set out for what was typed
};
