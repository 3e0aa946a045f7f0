#pragma once

#include <memory>
#include <QIcon>
#include <QList>
#include <QObject>
#include <QTimer>

#include "browser/strip/page_control.h"
#include "browser/tabs/leave_question.h"
#include "browser/tabs/tab_environment.h"

class QUrl;
class TAddress;
class TBrowserTab;
class THalvexBrowser;

// Where a new tab goes.
enum class TTabPlace {
  BySetting,  // right after the active tab, or at the end when OpenNewAtEnd is set
  AtEnd,
};

// The tabs of the main window: where they are inserted, which one is active, how they go. It owns the tabs and drives
// the strip that shows them; what the window shows about the active tab it learns from the signals.
class TTabStrip final : public QObject {
  Q_OBJECT

 public:
  // Milliseconds between a rejected pop-up and the moment its tab goes away.
  static constexpr int CloseHiddenInterval = 2000;

  // `owner` is the window that the tabs' dialogs belong to. `pages` becomes the tabs' place on the screen.
  TTabStrip(QWidget *owner, TZVPageControl *pages, TTabEnvironment &environment);
  ~TTabStrip() override;

  // A visible tab; it becomes the active one.
  TBrowserTab *NewTab(TTabPlace place = TTabPlace::BySetting);
  // As NewTab, but the active tab stays active unless OpenNewInForeground is set.
  TBrowserTab *NewBackgroundTab(TTabPlace place = TTabPlace::BySetting);
  // As NewTab at that position in the strip, but the active tab stays active. Positions count hidden tabs too; one
  // outside the strip is its end.
  TBrowserTab *NewTabAt(int position);
  // As NewBackgroundTab, for a window that a page asked for: it gets its place in the strip when its first address has
  // passed the pop-up test.
  TBrowserTab *NewHiddenTab();

  [[nodiscard]] TBrowserTab *GetActivePage() const;
  [[nodiscard]] TBrowserTab *Tab(int position) const;  // nullptr when out of range
  [[nodiscard]] int TabCount() const;                  // hidden ones too
  [[nodiscard]] QList<TBrowserTab *> Tabs() const;     // in strip order, hidden ones too
  // The position that is remembered from one activation to the next; -1 before the first.
  [[nodiscard]] int ActiveTabIndex() const;
  // What a list shows beside the tab: its status image, else the page's own icon.
  [[nodiscard]] QIcon IconOf(const TBrowserTab *tab) const;
  // The page's own icon, or the plain one.
  [[nodiscard]] QIcon PageIconOf(const TBrowserTab *tab) const;
  [[nodiscard]] TZVPageControl &Pages() const { return *m_pages; }
  [[nodiscard]] TTabEnvironment &Environment() const { return m_environment; }

  void Activate(TBrowserTab *tab);
  // For a question that must be seen: the window, too, wherever it is.
  void BringToFront(TBrowserTab *tab);
  // Activates the page at `position`; a position outside the strip does nothing.
  void MakeMeActiveTab(int position);
  // The n-th visible tab (from 1); 9 is the last one.
  void ActivateVisible(int number);
  // When `tab` is the active one: the next tab takes over, and for the first tab the one before it, going round the end
  // of the strip. That a closed first tab hands over to the last one is meant.
  void ActivateNeighbourOf(const TBrowserTab *tab);

  // As the user's wish: asks the page, unless closing is locked. A page that has something to lose stays until the user
  // has answered in its tab.
  void CloseByUser(TBrowserTab *tab);
  void CloseActive();
  void CloseHiddenTabs();
  // While set, the close commands and close-all do nothing.
  void SetClosingLocked(bool locked) { m_closingLocked = locked; }
  [[nodiscard]] bool ClosingLocked() const { return m_closingLocked; }
  [[nodiscard]] TLeaveQuestion &Leaving() { return m_leaving; }

  void StopAll();
  void RefreshAll();
  // The same for the timer, which asks nobody: pages that wait for the user, or came from a form, stay as they are.
  void RefreshUnattended();
  void ShowAdjacent(bool forward);

  // Opens an address that a page's own menu or a dropped link names.
  void OpenFromPage(const TAddress &address, bool background);

  // The windows that pages of `browser`, which is not in a tab, ask for open like those that a tab's page asks for, out
  // of the `windows` that they may have.
  void OpenWindowsOf(THalvexBrowser *browser, const std::shared_ptr<TWindowBudget> &windows);
  // A window, or what comes to the same, that such a page did not get. Told of the tab in front.
  void TellStopped(const QString &address);

  // For TBrowserTab.
  void ShowTab(TBrowserTab *tab);
  void Remove(TBrowserTab *tab);
  // The windows that its page asked for and that never showed; null for those of pages beside the tabs.
  void CloseEmptyWindowsOf(const TBrowserTab *opener);

 Q_SIGNALS:
  // About the active tab; what it says of itself is passed on.
  void ActiveTabChanged(TBrowserTab *tab);
  void StatusTextChanged(const QString &text);
  void ProgressChanged(int percent);
  void CommandStateChanged(bool backEnabled, bool forwardEnabled);
  void AddressChanged(const QString &address);
  void ActiveTitleChanged(const QString &title);
  void IndicatorsChanged(TBrowserTab *tab);
  // About any tab.
  void TabOpened(TBrowserTab *tab);
  void TabsChanged();  // opened, closed, moved, or showing another address
  void TabRecordChanged(TBrowserTab *tab);
  void TabPlaceChanged(TBrowserTab *tab);  // scrolled
  void TabClosing(TBrowserTab *tab);       // see TBrowserTab::Closing
  void TabLoaded(TBrowserTab *tab);
  void TabFellAsleep(TBrowserTab *tab);
  void FrontWanted();  // a page has something that must be seen
  void PageSetsOut();  // a page is about to be asked for
  void PageFullScreenRequested(TBrowserTab *tab, bool on);
  // The pop-up test has stopped the window that `tab` was made for; the tab goes away soon.
  void PopupRejected(TBrowserTab *tab);
  // The page of `tab` did not get a window with this address.
  void WindowStopped(TBrowserTab *tab, const QString &address);

 private:
  [[nodiscard]] int PositionFor(TTabPlace place) const;
  TBrowserTab *InsertTab(int position, bool hidden);
  TBrowserTab *InsertInBackground(int position, bool hidden, bool staysBehind);
  void Relay(TBrowserTab *tab);
  void OnPopupRejected(TBrowserTab *tab);
  void BringSiteToFront(const QUrl &origin);
  void OnActivePageChanged(QWidget *page);

  QWidget *m_owner;
  TZVPageControl *m_pages;
  TTabEnvironment &m_environment;
  QList<QIcon> m_images;
  QIcon m_plainPage;           // for a page without an icon of its own
  QTimer m_closeHidden{this};  // tmrCloseHidden
  TLeaveQuestion m_leaving;
  bool m_closingLocked = false;
  bool m_quiet = false;  // Changes of the active tab are not told.
};
