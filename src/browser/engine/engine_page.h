#pragma once

#include <functional>
#include <optional>
#include <QElapsedTimer>
#include <QHash>
#include <QPointer>
#include <QTimer>
#include <QWebEnginePage>

#include "browser/engine/engine.h"
#include "browser/engine/load_failure.h"
#include "browser/engine/policy.h"
#include "browser/page/encryption_level.h"
#include "browser/page/permission_requests.h"

class QDialog;
class TContentFilter;
class THangWatch;
class TInputWatch;
class TPageDownloads;
class TPageRules;
class TPageScripts;
class TQuestionSheet;
class TScriptDialogs;
struct TNavigation;

// The engine's page with the course of a top-level load made plain: asked about, committed, finished. A navigation that
// was cancelled when asked about leaves no trace; one that was allowed always ends in Finished, also when it became a
// download, was stopped, or lost its renderer.
class TEnginePage final : public QWebEnginePage {
  Q_OBJECT

 public:
  TEnginePage(TEngine &engine, QObject *parent);
  ~TEnginePage() override;

  // Script dialogs belong to the window of `owner`, which must outlive the page. It has one before its first
  // navigation.
  void SetOwner(QWidget *owner) { m_owner = owner; }
  // Holds from the next navigation on, and narrows what the policy allows.
  void SetDownloadControlOptions(TDownloadControlOptionSet options);
  // Tells real clicks in the view from navigations that scripts begin.
  void WatchInput(QWidget *view);
  // Where script dialogs are shown that can wait for their answer.
  void ShowDialogsOn(TQuestionSheet *sheet);
  // The user acts himself: open script dialogs are answered with Cancel, and those that were switched off may come
  // again.
  void NoteUserAction();
  // Opens the address, as the user's wish.
  void Open(const QUrl &url);
  // Asks the page, if it has anything to lose, whether it may be closed; LeaveAnswered comes, not always later. A page
  // that does not answer for five seconds is given up; where it wants the user to be asked, he is, on the sheet.
  void AskToLeave();
  void ForgetLeave();
  // Asks the same without the user: `done` is told whether the page would let itself be left, later where it has to be
  // asked. Never where it is being asked already, or goes.
  void AskIfSaved(const std::function<void(bool)> &done);
  // Takes over a history that History() gave once, and loads its current page as it was left, whose address
  // is the answer. Empty, and nothing is loaded, when it is no such thing.
  QString RestoreHistory(const QByteArray &history);
  // Back, forward and the place in each page; empty where nothing was shown yet.
  [[nodiscard]] QByteArray History() const;
  // The page came in answer to a form, which a reload sends again: the user is asked first.
  [[nodiscard]] bool CameFromForm() const { return m_fromForm; }
  // Answers open script dialogs; the page is going away.
  void DismissDialogs();

  [[nodiscard]] bool IsUnderWay() const { return m_underWay; }
  // From now on it is the page of a window that the page of `maker` asked for.
  void BecomeWindow(const QUrl &maker);
  // For which site it acts when it is at `url`: that one's, or, without an address of its own, that which opened it.
  [[nodiscard]] QUrl OwnerOf(const QUrl &url) const;
  // Such a window has had no page yet but the empty one that the other page may write into.
  [[nodiscard]] bool IsUnsettled() const { return m_isUnsettled; }
  // Of the last navigation: whether its content has begun to arrive, and where it led.
  [[nodiscard]] bool HasCommitted() const { return m_committed; }
  [[nodiscard]] QString PendingAddress() const;
  // What url() is as a text, which it is asked for often: once for each change of any tab.
  [[nodiscard]] QString Address() const;
  [[nodiscard]] TEncryptionLevel EncryptionLevel() const;
  // The certificate of the page where it is known: only those with errors are shown by the engine.
  [[nodiscard]] QSslCertificate Certificate() const;
  // What was wrong with the certificate of the last navigation, if that is why it failed.
  [[nodiscard]] std::optional<TCertificateProblem> CertificateProblem() const { return m_problem; }

  void triggerAction(WebAction action, bool checked = false) override;

 Q_SIGNALS:
  void BeforeNavigate(TNavigation *navigation);
  void PermissionWanted(const TPermissionRequest &request);  // for what the policy leaves to the user
  void AddressChanged(const QString &address);
  void PageRequested();  // its request has gone out
  void Committed(const QString &address);
  void Failed(const TLoadFailure &failure);  // comes before Finished
  void Finished(const QString &address);
  void Died();  // the renderer; comes before Finished
  void EncryptionLevelChanged();
  void UserActed();
  void Touched();  // the user has clicked or typed in it
  void LeaveAnswered(bool mayGo);
  void CloseRequested();  // by the page's script
  void StayChosen();      // the user has kept the page instead of following a navigation
  void BringToFrontRequested();
  void ZoomWanted(bool in);                     // by the wheel with Ctrl
  void ConsoleWritten(const QString &message);  // by any script, the page's own too

 protected:
  bool acceptNavigationRequest(const QUrl &url, NavigationType type, bool isMainFrame) override;
  void javaScriptAlert(const QUrl &origin, const QString &message) override;
  bool javaScriptConfirm(const QUrl &origin, const QString &message) override;
  bool javaScriptPrompt(const QUrl &origin, const QString &message, const QString &defaultValue,
                        QString *result) override;
  void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level, const QString &message, int line,
                                const QString &source) override;

 private:
  void Begin(const QUrl &url, bool byPage);
  void OnUrlChanged(const QUrl &url);
  void OnProgress(int progress);
  void OnLoadingChanged(const QWebEngineLoadingInfo &info);
  void OnCertificateError(QWebEngineCertificateError error);
  void OnRendererDied();
  void CommitIfPending();
  void Finish();
  void Want(const std::function<void()> &begin);
  void AnswerLeave(bool mayGo);
  // Whether that is the engine's question if the page may be left, which the user is now asked in the page's place.
  [[nodiscard]] bool IsAskedOnSheet(const QUrl &origin);
  void AskForDownloads();
  void OfferToEnd();
  void AskToSendAgain(WebAction reload);

  TEngine &m_engine;
  QWidget *m_owner = nullptr;
  TContentFilter *m_filter = nullptr;
  TInputWatch *m_input = nullptr;
  TScriptDialogs *m_dialogs = nullptr;
  QPointer<TQuestionSheet> m_sheet;
  TPageDownloads *m_downloads = nullptr;
  THangWatch *m_hangs = nullptr;
  TPageScripts *m_scripts = nullptr;
  TPageRules *m_rules = nullptr;
  mutable QUrl m_spelledUrl;  // of which m_spelled is the text
  mutable QString m_spelled;
  QUrl m_pending;            // The address of the navigation under way, redirects followed.
  bool m_underWay = false;   // An allowed navigation has not finished yet.
  bool m_committed = false;  // Its content has begun to arrive.
  QUrl m_cancelled;          // A refused navigation whose beginning and end the engine is about to report.
  bool m_isUnsettled = false;
  bool m_insecureParts = false;
  bool m_setOutByForm = false;  // or by a link that counts as one
  bool m_fromForm = false;
  std::function<void()> m_wanted;  // what the user wants instead of this page, until it sets out
  QElapsedTimer m_sinceWanted;
  int m_wantTries = 0;
  QTimer m_wantAgain{this};
  QElapsedTimer m_sinceStay;  // the engine was told that the page stays, whatever the user will say
  bool m_askedToLeave = false;
  bool m_leaveGranted = false;            // what comes next may take the page's place without another question
  std::function<void(bool)> m_whenSaved;  // who has asked, where that is not the user
  bool m_answersLate = false;             // was asked for somebody else than the user, and has not said anything
  bool m_leaveForgotten = false;          // nobody waits for the page's answer any more
  QPointer<QDialog> m_leaveQuestion;
  int m_leaveTries = 0;
  QTimer m_leaveWait{this};  // active while the page has not answered yet
  std::optional<TCertificateProblem> m_problem;
  QHash<QString, QSslCertificate> m_certificates;  // by host: those accepted in spite of errors
};
