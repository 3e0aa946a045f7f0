#pragma once

#include <functional>
#include <QObject>
#include <QUrl>

#include "browser/engine/engine.h"
#include "browser/engine/policy.h"
#include "browser/page/permission_requests.h"

class QWebEnginePage;

// What a page may do by the policy: it is set on the engine while the page is navigated to, so that it holds from the
// first byte, and what the policy leaves to the user he is asked once the page is there.
class TPageRules final : public QObject {
  Q_OBJECT

 public:
  // Belongs to `page`.
  TPageRules(TEngine &engine, QWebEnginePage *page);

  // Which kinds of content the next navigation may fetch, whatever the policy allows.
  void LimitContent(TDownloadControlOptionSet options) { m_limits = options; }
  [[nodiscard]] TDownloadControlOptionSet Limits() const { return m_limits; }

  // The site that has opened the page's window: without an address of its own the page acts for that one. Empty, or no
  // site of the web, for nobody.
  void SetMaker(const QUrl &maker);
  // For which site a page at `url` acts.
  [[nodiscard]] QUrl OwnerOf(const QUrl &url) const;
  [[nodiscard]] TPagePermissions Of(const QUrl &url) const;

  // A navigation has set out, of the page that is there (`byPage`) or of somebody else.
  void Begin(const QUrl &url, bool byPage);
  // Its page is there.
  void Commit(const QUrl &url);
  // It came to nothing: what is there stays, at `url`.
  void GiveUp(const QUrl &url);
  // While a page is about to come that may do more than the one that wants it, that one has this for its own already;
  // its frames must not begin anything with it.
  [[nodiscard]] bool MayFrameSetOut() const { return !m_isWider; }

  // Asks about the page at `url`, whose content has begun to arrive (each question once), and when all of it is there,
  // about what it has in it.
  void AskAtStart(const QUrl &url);
  void AskAtEnd(const QUrl &url);
  // About what came as a file since it takes a plug-in to show it.
  void AskAboutDocument(const QUrl &url);

 Q_SIGNALS:
  void PermissionWanted(const TPermissionRequest &request);

 private:
  void Apply(const QUrl &url);
  // What was kept from the page when it came it only gets by coming again.
  void AskAndReload(const QUrl &url, TPermission permission);
  // `goOn` when the user allows it.
  void Ask(const QUrl &url, TPermission permission, const std::function<void()> &goOn);

  TEngine &m_engine;
  QWebEnginePage *m_page;
  TDownloadControlOptionSet m_limits = AllDownloadControlOptions;
  QUrl m_maker;
  TPagePermissions m_applied;
  TPagePermissions m_shown;  // of the page that is there
  bool m_isWider = false;    // m_applied allows the page that is there what its own rules do not
  bool m_wasAsked = false;   // about the page that is there, at its start
};
