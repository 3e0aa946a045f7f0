#pragma once

#include <QPointer>
#include <QWidget>

#include "browser/engine/halvex_browser.h"
#include "browser/engine/policy.h"
#include "browser/tabs/tab_environment.h"
#include "browser/tabs/window_budget.h"

class TTabStrip;
struct TTabRecord;

// What a tab shows in front of its caption; the image index in the strip is the state less 1.
enum class TTabState {
  None = 0,
  Started = 1,               // a navigation has begun
  FinishedInBackground = 2,  // loaded while the user looked elsewhere
  Arriving = 3,              // the page has begun to arrive
  Locked = 4,                // overrides the others
};

// The pop-up test of a tab that was made for a window that a page asked for.
enum class TPopupGate {
  None,      // not asked for by a page, or let in
  Untested,  // its first real address has not come yet; it has no place in the strip
  Rejected,  // it waits to be closed and is never saved
};

enum class TLock {
  Open,
  Pending,  // locked at its next completed navigation
  Locked,   // the page stays; links open beside it
};

// How far the tab is with what it was last asked for.
enum class TLoad {
  Blank,      // there is nothing to show
  Announced,  // an address is shown as what the tab is for, and nothing was opened since
  Waiting,    // handed to the browser, which has not set out yet
  Loading,    // a top-level navigation is under way
  Shown,      // the page is there
  Failed,     // a notice stands in the page's place
};

// One page of the tab strip. It owns one browser, makes its caption from the page's title, and carries what the user
// set for it: a name of its own, a lock, being spared by close-all. Once the tab is being closed `Browser()` is null
// and every operation does nothing or gives empty text, so that late events and commands are harmless.
class TBrowserTab final : public QWidget {
  Q_OBJECT

 public:
  // Behind those of the states: the page waits for an answer.
  static constexpr int QuestionImage = 4;

  // A hidden tab was made for a window that a page asked for; it gets no place in the strip until its first real
  // address has passed the pop-up test.
  TBrowserTab(QWidget *owner, TTabEnvironment &environment, TTabStrip &strip, bool hidden);
  ~TBrowserTab() override;

  void Navigate(const TAddress &address);
  // Shows `address` as what the tab is for and opens nothing: NavigateStored does that, or Refresh.
  void Announce(const TAddress &address);
  // Opens `Url` again when there is one; with its history and where it was scrolled to, if that was announced too.
  void NavigateStored();
  // What brings the tab back later.
  [[nodiscard]] TTabRecord Record() const;
  // Becomes the tab of the record, with its page announced.
  void Announce(const TTabRecord &record);
  void GoHome();
  void GoBack();
  void GoForward();
  // With Ctrl held down the cache is passed by.
  void Refresh();
  // The same whatever keys are held. A page that was only announced is opened by both.
  void Reload(bool passCache);
  void Stop();
  void MakeBlank();

  [[nodiscard]] QString GetLocationUrl() const;
  [[nodiscard]] QString GetLocationName() const;

  void SetCaption(const QString &title);
  void SetStickyName(const QString &name);
  void AskStickyName();
  void SetLocked(bool locked);
  void SetRestored(bool restored) { m_restored = restored; }
  // Of a locked tab, nothing changes.
  void SetLockPending(bool pending);
  void SetHideFromCloseAll(bool hide);
  // The user spares its page from sleep.
  void SetKeptAwake(bool keep);
  // The page sleeps until the tab is shown, where nothing is lost by it; what the tab tells of the page stays.
  void FallAsleep();
  // Becomes the window that a page of the site `maker` asked for: of the tab `opener`, or of a browser beside the tabs
  // where that is null. `windows` is what its pages may go on to open, together with that page.
  void TakeWindow(QWebEngineNewWindowRequest *request, const QUrl &maker, TBrowserTab *opener,
                  const std::shared_ptr<TWindowBudget> &windows);
  // Removes the tab; the last visible one is made blank instead.
  void Close();
  // The blank, unlocked, nameless state that the last tab is left in.
  void ResetToBlank();
  // Its zone is asked for again.
  void RefreshZone();
  // The user has looked at the tab: the mark of a load finished in the background goes away.
  void MarkSeen();

  [[nodiscard]] THalvexBrowser *Browser() const { return m_browser; }
  // No other tab of this process has or had it.
  [[nodiscard]] quint64 Id() const { return m_id; }
  [[nodiscard]] const QString &Title() const { return m_title; }
  // The sticky name, else the full title, else "Blank" for an empty page: what lists of tabs show.
  [[nodiscard]] QString ListCaption() const;
  [[nodiscard]] const QString &Url() const { return m_url.Text(); }
  [[nodiscard]] const TAddress &Asked() const { return m_url; }
  // What "Last Open Sites" keeps and the address bar shows: the page's address, or the one still on its way to an empty
  // tab.
  [[nodiscard]] QString AddressToSave() const;
  [[nodiscard]] const QString &PopupUrl() const { return m_popupUrl; }
  // The tab whose page asked for this one; none for other tabs, or when it has gone.
  [[nodiscard]] TBrowserTab *Opener() const { return m_opener; }
  [[nodiscard]] const QString &StickyName() const { return m_stickyName; }
  [[nodiscard]] bool Locked() const { return m_lock == TLock::Locked; }
  [[nodiscard]] bool LockPending() const { return m_lock == TLock::Pending; }
  [[nodiscard]] bool Hidden() const { return m_gate == TPopupGate::Untested; }
  [[nodiscard]] bool Blocked() const { return m_gate == TPopupGate::Rejected; }
  [[nodiscard]] bool Restored() const { return m_restored; }
  [[nodiscard]] bool HideFromCloseAll() const { return m_hideFromCloseAll; }
  [[nodiscard]] bool KeptAwake() const { return m_keptAwake; }
  [[nodiscard]] bool Asleep() const { return m_browser && m_browser->IsAsleep(); }
  [[nodiscard]] bool OpenedAsNewWindow() const { return m_openedAsNewWindow; }
  [[nodiscard]] TLoad Load() const { return m_load; }
  [[nodiscard]] bool Announced() const { return m_load == TLoad::Announced; }
  [[nodiscard]] bool Busy() const { return m_load == TLoad::Loading; }
  [[nodiscard]] bool Secure() const { return m_secure; }
  [[nodiscard]] TEncryptionLevel SecureLock() const { return m_secureLock; }
  [[nodiscard]] TSecurityZone SecureZone() const { return m_secureZone; }
  [[nodiscard]] bool BackEnabled() const { return m_backEnabled; }
  [[nodiscard]] bool ForwardEnabled() const { return m_forwardEnabled; }
  [[nodiscard]] TTabState State() const { return m_state; }
  // Title and state in words, for those who do not see the strip.
  [[nodiscard]] QString Description() const;
  // In the strip's images, -1 for none.
  [[nodiscard]] int Image() const;
  [[nodiscard]] int Progress() const { return m_progress; }  // percent of the load under way, 100 when there is none

 Q_SIGNALS:
  // Each speaks of this tab, in front or not.
  void StatusTextChanged(const QString &text);
  void ProgressChanged(int percent);
  void CommandStateChanged(bool backEnabled, bool forwardEnabled);
  void AddressChanged(const QString &address);  // what the address bar is to show
  void TitleChanged(const QString &title);      // as lists show it
  void IndicatorsChanged();                     // busy, secure, zone or zoom
  void Changed();                               // what it shows, or is for, is another address
  void RecordChanged();                         // what Record() gives, the address aside
  void PlaceChanged();                          // the same, by scrolling
  void Closing();                               // it is about to go, or to be made blank in its place
  void Loaded();
  void FellAsleep();
  void PageSetsOut();  // it is about to be asked for
  void PageFullScreenRequested(bool on);
  void PopupRejected();
  // Its page asked for more windows than it may have, or, being locked, for one that the pop-up test stops.
  void WindowStopped(const QString &address);

 private:
  void ConnectBrowser();
  void OnBeforeNavigate(TNavigation *navigation);
  void TestHiddenTab(TNavigation *navigation);
  [[nodiscard]] bool ComesBack(const TNavigation &navigation);
  void SendAway(TNavigation *navigation);
  [[nodiscard]] bool StopsWindow(const QString &address, bool userActed);
  void CloseByScript();
  void OnNewWindowRequested(QWebEngineNewWindowRequest *request);
  void OnNavigateComplete(const QString &address);
  void OnDocumentComplete(const QString &address);
  void OnProgress(int progress, int maximum);
  void OnCommandState(int command, bool enabled);
  void ShowState(TTabState state);
  void ShowImage();
  void ShowAwaitedAddress();
  // The tab waits for what it was asked for, with the history that it has.
  void KeepAsked();
  // What was on its way does not come: caption and address are the page's own again.
  void ShowOwnPage();
  void ShowNobodysPage(const QString &address);
  [[nodiscard]] bool KeepsPage(const TAddress &address) const;
  [[nodiscard]] TSecurityZone ZoneOf(const QString &address) const;
  QString RestoreHistory();  // the address that the tab comes back to
  [[nodiscard]] bool IsActive() const;
  // What the load comes to when nothing is under way.
  [[nodiscard]] TLoad Settled() const;
  // Whether the address is the page's own, jumps inside it aside.
  [[nodiscard]] bool IsOwnPage(const QUrl &url) const;

  TTabEnvironment &m_environment;
  TTabStrip &m_strip;
  QPointer<THalvexBrowser> m_browser;
  quint64 m_id;
  QString m_title;
  TAddress m_url;        // the last address that the program asked this tab to open
  QByteArray m_history;  // of the page that is announced
  QPointer<TBrowserTab> m_opener;
  std::shared_ptr<TWindowBudget> m_windows;  // with the windows that its pages open
  QString m_popupUrl;                        // the first address of a window that a page asked for
  QString m_stickyName;
  TSecurityZone m_secureZone = TSecurityZone::LocalMachine;
  TEncryptionLevel m_secureLock = TEncryptionLevel::None;
  int m_progress = 100;
  TTabState m_state = TTabState::None;
  TPopupGate m_gate;
  TLock m_lock = TLock::Open;
  TLoad m_load = TLoad::Blank;
  bool m_openedAsNewWindow = false;
  bool m_isPageWindow = false;  // a page asked for it, and its script may close it
  bool m_backEnabled = false;
  bool m_forwardEnabled = false;
  bool m_secure = false;
  bool m_isPageSecure = false;  // the same of the page behind a notice
  bool m_nonHttpsSeen = false;
  bool m_hideFromCloseAll = false;
  bool m_keptAwake = false;
  bool m_wasActiveAtCompletion = false;
  bool m_restored = false;
  bool m_isStopped = false;   // by the user, and its end is still to be told
  QString m_wish;             // where the user wants to go, until that sets out
  bool m_comesBack = false;   // to the page that it is locked to
  bool m_leavesPage = false;  // what it still shows is not its page any more
};
