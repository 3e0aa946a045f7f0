#pragma once

#include <functional>
#include <QIcon>
#include <QPointer>
#include <QUrl>
#include <QWidget>

#include "browser/engine/address.h"
#include "browser/engine/engine.h"
#include "browser/page/page_properties.h"

class QWebEnginePage;
class QWebEngineView;
class QWebEngineNewWindowRequest;
class TAskedWindow;
class TEnginePage;
class TLinkTargets;
class TPageFinder;
class TPageFullScreen;
class TPagePrinting;
class TPageSleep;
class TPageStack;
class TPageZoom;
class TQuestionSheet;
class TWordMarks;
struct TLoadFailure;

// One navigation that is about to happen. Set `cancel` to stop it.
struct TNavigation {
  QString address;
  bool mainFrame = true;
  bool linkClicked = false;  // The user clicked a link or submitted a form with it.
  bool reload = false;
  bool historyMove = false;  // Back or forward.
  bool redirect = false;     // The server or the page sent an accepted navigation on to here.
  bool cancel = false;
  // Told by a browser that tells targets.
  bool newWindow = false;  // It would open a window of its own: NewWindowRequested follows where it is not stopped.
  QString target{};        // the name of that window, as the link, the form or the script has it
  QString baseTarget{};    // where the links of the document that is shown open: the target of its base element
};

enum class TBrowserCommand { Forward = 1, Back = 2, Other = -1 };

// The program's own wrapper around the engine's view: every tab owns one, and the page commands of the main window
// reach the engine only through it. The engine's view is made when the first address is opened, so that a tab that was
// never shown costs almost nothing.
class THalvexBrowser final : public QWidget {
  Q_OBJECT

 public:
  // `owner` is the window that dialogs belong to; `options` is the property of that name. The user agent is a matter of
  // the engine's policy.
  THalvexBrowser(QWidget *owner, TEngine &engine, TDownloadControlOptionSet options, QWidget *parent = nullptr);
  ~THalvexBrowser() override;

  // Never fails: what cannot be loaded shows the load-error page.
  void Navigate(const TAddress &address);
  void ShowBlank();
  // As the page's own, which it gives for a later start. The address that it comes back to; empty when `history` is no
  // such thing.
  QString RestoreHistory(const QByteArray &history);
  [[nodiscard]] QByteArray History() const;
  void GoBack();
  void GoForward();
  void ComeBack();  // from the blank page to LastPlace, though it may be one that Back passes over
  [[nodiscard]] const QString &LastPlace() const { return m_lastPlace; }  // that was no blank page; empty for none
  void Stop();
  void Refresh();            // normal
  void RefreshCompletely();  // past the cache

  // For which site its page acts: without an address of its own for that which has opened its window.
  [[nodiscard]] QUrl Owner() const;
  // The zone that this browser's page is in when it is at `address`.
  [[nodiscard]] TSecurityZone ZoneOf(const QString &address) const;
  [[nodiscard]] QString LocationUrl() const;   // the page's address; what was asked for while an error page shows
  [[nodiscard]] QString LocationName() const;  // the page's title
  [[nodiscard]] QIcon Icon() const;
  // True while a text of the program's own stands in the place of a page that could not be shown.
  [[nodiscard]] bool ShowsNotice() const;
  [[nodiscard]] bool CanGoBack() const;
  [[nodiscard]] bool CanGoForward() const;

  // The standard commands. Cut, copy, paste and find give the page the keyboard first.
  void SaveAs();
  void Print();
  void PrintWithoutAsking();
  void PrintPreview();
  void PageSetup();
  void Properties();
  void Cut();
  void Copy();
  void Paste();
  void SelectAll();
  void Undo();
  void Redo();
  void SetZoom(int zoom);  // 0 smallest .. 4 largest; others do nothing
  [[nodiscard]] int Zoom() const;
  void ZoomIn();  // a step, which is remembered for the page's site
  void ZoomOut();
  void ResetZoom();
  [[nodiscard]] int ZoomPercent() const;
  void FindOnPage();            // opens the find bar
  void FindNext(bool forward);  // opens it when nothing was searched for yet
  void ViewSource();            // emits ViewSourceRequested

  // Looks for words in the text of the page, and with `marks` marks them there (see TWordMarks); WordsFound comes
  // later. What was looked for before is forgotten, its marks go; an empty list does only that, and so does another
  // page.
  void LookForWords(const QStringList &words, bool marks);

  // Writes the page to a new file "*.htm" in the temporary folder; `done` gets its path, empty on failure. With
  // `insertBase` the source gets a base element with the page's address, so that relative links keep working elsewhere.
  void SaveToTemporaryFile(bool insertBase, const std::function<void(const QString &)> &done);
  // Fills in what the engine knows and asks the page for the rest.
  void CollectProperties(const std::function<void(const TPageProperties &)> &done);

  // Which kinds of content this browser fetches; the policy may forbid more of them. A change holds from the next
  // navigation on.
  [[nodiscard]] TDownloadControlOptionSet DownloadControlOptionSet() const { return m_options; }
  void SetDownloadControlOptionSet(TDownloadControlOptionSet options);

  // Asks the page whether it may be closed; LeaveAnswered comes, at once when nothing can be lost.
  void AskToLeave();
  void ForgetLeave();  // it is not closed after all, and will be asked again
  // From the first page on BeforeNavigate also tells the names of windows, and comes before NewWindowRequested, too.
  void TellTargets() { m_tellsTargets = true; }
  // Puts `html` in the place of the document that is shown; address and history stay the page's. Nothing where a notice
  // shows, or where there was no page yet.
  void ShowText(const QString &html);
  // Becomes the window that a page of the site `maker` asked for. Its page may never come: WindowCameToNothing.
  void TakeWindow(QWebEngineNewWindowRequest *request, const QUrl &maker);
  // The engine's page, made when it is not there yet. For tests.
  [[nodiscard]] QWebEnginePage *EnginePage();
  // The page if there is one.
  [[nodiscard]] QWebEnginePage *EnginePageIfAny() const;
  // The page came in answer to a form. Refresh asks before it is sent again.
  [[nodiscard]] bool CameFromForm() const;
  // The page waits for the user's answer, which he gives in the page's own place.
  [[nodiscard]] bool HasOpenQuestion() const;
  // Answers what is open as Escape would.
  void DismissQuestions();
  // Where nothing is lost by it the page gives its renderer back, and is loaded again when it is shown; AsleepChanged
  // comes later. Address, title, icon and history are those of the page meanwhile.
  void FallAsleep();
  [[nodiscard]] bool IsAsleep() const;
  [[nodiscard]] bool HasPageFullScreen() const;
  void LeavePageFullScreen();

 Q_SIGNALS:
  void StatusTextChanged(const QString &text);
  void ProgressChanged(int progress, int maximum);      // progress == maximum when done
  void CommandStateChanged(int command, bool enabled);  // 1 forward, 2 back
  void TitleChanged(const QString &title);
  void IconChanged();
  void ZoomChanged();
  void UserActed();                                              // in the page, or by opening another one
  void PlaceChanged();                                           // the page was scrolled
  void BeforeNavigate(TNavigation *navigation);                  // handled synchronously; set `cancel` to stop
  void NewWindowRequested(QWebEngineNewWindowRequest *request);  // handled synchronously
  void AddressChanged(const QString &address);                   // also for jumps inside the page
  void NavigateComplete(const QString &address);                 // top-level: the page's content has begun to arrive
  void DocumentComplete(const QString &address);                 // top-level: loaded, or failed
  // What this window was opened for became a download, belongs to another program, or has no content.
  void WindowCameToNothing();
  void CloseRequested();  // by the page's script
  void LeaveAnswered(bool mayGo);
  void StayChosen();  // the user has kept the page instead of following a navigation
  void SecureLockIconChanged(TEncryptionLevel level);
  void OpenInNewTabRequested(const TAddress &address, bool background);
  // `address` begins with "view-source:"; opened like any other, it shows the page as it was sent.
  void ViewSourceRequested(const TAddress &address);
  void PageFullScreenRequested(bool on);
  void FocusReceived();
  void QuestionOpenChanged(bool open);
  void AsleepChanged(bool asleep);
  void WordsFound(const QList<int> &words);      // by their places in the list
  void WordClicked(int word, const QPoint &at);  // a mark; `at` is below it, on the screen
  void BringToFrontRequested();  // A question that nothing else can be done beside: its tab should be seen.

 private:
  void EnsureView();
  void SetView(QWebEngineView *view);
  void ConnectPage();
  void OnNewWindow(QWebEngineNewWindowRequest &request);
  [[nodiscard]] bool HasLivePage() const;
  [[nodiscard]] bool IsLocalFailure() const;
  void GivePageTheFocus();
  void Edit(int action);  // one of the engine's
  void OnQuestion(bool open);
  void ShowLoadFailure(const TLoadFailure &failure);
  void ShowLocalFailure(const TAddress &address, const QString &text);
  void OnNoticeChanged();
  void ShowPage();
  void OnCommitted(const QString &address);
  void OnFinished(const QString &address);
  void ShowPageMenu(const QPoint &position);
  void UpdateEncryptionLevel();
  void UpdateCommandStates();
  // A tab's caption shows what was asked for until the page is known; this brings the page's own title back.
  void RepeatTitle();

  QPointer<QWidget> m_owner;
  TEngine &m_engine;
  TDownloadControlOptionSet m_options;
  TPageStack *m_stack;
  // From the first address on.
  QWebEngineView *m_view = nullptr;
  TEnginePage *m_page = nullptr;
  TAskedWindow *m_asked = nullptr;  // where another page asked for this window
  TQuestionSheet *m_sheet = nullptr;
  TPageFinder *m_finder = nullptr;
  TLinkTargets *m_targets = nullptr;
  TPageFullScreen *m_fullScreen = nullptr;
  TPagePrinting *m_printing = nullptr;
  TPageSleep *m_sleep = nullptr;
  TWordMarks *m_words = nullptr;  // from the first search on
  QString m_lastPlace;
  QString m_iconHost;
  QIcon m_icon;  // of the page that is shown, whatever is on its way
  bool m_tellsTargets = false;
  bool m_blank = false;  // shown blank without ever having had a page
  bool m_canGoBack = false;
  bool m_canGoForward = false;
  TEncryptionLevel m_encryptionLevel = TEncryptionLevel::None;
  TPageZoom *m_zoom;
};
