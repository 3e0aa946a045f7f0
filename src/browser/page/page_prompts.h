#pragma once

#include <QHash>
#include <QList>
#include <QPointer>
#include <QSet>
#include <QUrl>
#include <QWebEnginePage>

#include "browser/page/permission_decisions.h"

class QAuthenticator;
class TFullScreenNotice;
class TLanguage;
class TPermissionBar;
class TQuestionSheet;
class TSitePermissions;

// What a page asks of its user besides script dialogs: to sign in, for permissions, for a client certificate. It
// connects itself to the page and belongs to it. Protocol handlers are refused quietly.
class TPagePrompts final : public QObject {
  Q_OBJECT

 public:
  // Dialogs are shown on `sheet`; the bar belongs to `owner`.
  TPagePrompts(QWebEnginePage *page, TQuestionSheet *sheet, QWidget *owner, const TLanguage &language);
  ~TPagePrompts() override;

  // The bar with permission questions, to be laid over the page; it shows and hides itself. It belongs to `owner`.
  [[nodiscard]] TPermissionBar *Bar() const;

  // Asks the user unless he has decided already, one question after the other. Forgotten when another page comes.
  void AskPermission(const TPermissionRequest &request);

  // Whether the page waits for an answer in the bar.
  [[nodiscard]] bool IsAsking() const { return !m_permissionRequests.isEmpty(); }

  // Tells the user how to leave full screen, over the top of `over`, for a few seconds. Call it when the page's request
  // for full screen was accepted, and the other one when full screen ends.
  void ShowFullScreenNotice(QWidget *over, const QUrl &origin);
  void HideFullScreenNotice();

  // What the user has allowed and refused to the site of the page, and to those that have asked from within it, to be
  // looked at and changed; a list for each. None where he was not asked.
  [[nodiscard]] QList<TSitePermissions *> SitePermissions(QWidget *parent);

  // The user acts himself: sign-in dialogs that were kept from opening may come again.
  void AllowSignIns() { m_signInsRefused = 0; }

 Q_SIGNALS:
  void CaptureAllowed();  // by a camera, a microphone, or of the screen

 private:
  // How far a site or a proxy is with the user, and which addresses have been given his answer.
  struct TSignIn {
    enum class TState { Unknown, Asking, Refused, Given };
    TState state = TState::Unknown;
    QString user{};
    QString password{};
    QSet<QUrl> addresses{};
  };

  void Answer(const TPermissionRequest &request, TPermissionAnswer answer);
  void AskNextPermission();
  void FinishPermission(TPermissionDecision decision);
  // Decided here or elsewhere: the engine is told, and what waits for it here is answered.
  void FollowDecision(const QUrl &site, TPermission permission, TPermissionDecision decision);
  void ForgetPermissionRequests();
  void SignIn(const QUrl &url, const QString &proxyHost, QAuthenticator *authenticator);
  // Asks the user in the page's own place, once more when `refusedUser` was not let in.
  void AskSignIn(const QString &place, const QUrl &url, const QString &proxyHost, const QString &realm,
                 const QString &refusedUser);
  void SelectClientCertificate(QWebEngineClientCertificateSelection selection);

  QWebEnginePage *m_page = nullptr;
  QPointer<TQuestionSheet> m_sheet;
  const TLanguage &m_language;
  QPointer<TPermissionBar> m_bar;
  QPointer<TFullScreenNotice> m_notice;
  TPermissionDecisions &m_decisions;
  TPermissionRequests *m_requests;
  QList<TPermissionRequest> m_permissionRequests;  // not answered yet
  QUrl m_site;                                     // of the page that is there
  QList<QUrl> m_askers;                            // the origins that have asked on this page
  // By place that asks, for the page being shown.
  QHash<QString, TSignIn> m_signIns;
  int m_signInsRefused = 0;         // one after the other, since the user did something
  bool m_reloadsForSignIn = false;  // the next load begins with the answers of this one
};
