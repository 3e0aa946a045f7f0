#pragma once

#include <QWebEngineUrlRequestInterceptor>

#include "browser/engine/engine.h"

// Which of the switchable kinds a request is for; no flag for everything else. Sounds and videos are
// one kind to the engine and are told apart by the file name's ending; a name that says nothing counts as a video,
// which is what most players load.
[[nodiscard]] TDownloadControlOptionSet ContentKindOf(int resourceType, const QUrl &url);

// Keeps one page from fetching the kinds of content that its browser does not want or that the policy forbids it.
class TContentFilter final : public QWebEngineUrlRequestInterceptor {
  Q_OBJECT

 public:
  explicit TContentFilter(const TEngine &engine, QObject *parent = nullptr)
      : QWebEngineUrlRequestInterceptor(parent), m_engine(engine) {}

  // The kinds that the browser wants of the page being shown.
  void SetAllowed(TDownloadControlOptionSet allowed) { m_allowed = allowed; }

  // Whether the page was requested at all; a worker of its site may have answered, whose requests are not seen here.
  [[nodiscard]] bool SawRequest() const { return m_sawRequest; }
  // Whether the last request for a page itself, rather than a part of one, sent a form.
  [[nodiscard]] bool SentForm() const { return m_sentForm; }
  void ForgetRequest() { m_sawRequest = m_sentForm = false; }

  void interceptRequest(QWebEngineUrlRequestInfo &info) override;

 Q_SIGNALS:
  // A request for a page, or for one in a frame, is about to go out: a file may come of it.
  void DocumentRequested(const QUrl &address);
  // The page's own request is about to go out.
  void PageRequested();
  // A page that came securely fetched a part of itself in the clear.
  void InsecurePartRequested();

 private:
  const TEngine &m_engine;
  TDownloadControlOptionSet m_allowed = AllDownloadControlOptions;
  bool m_sawRequest = false;
  bool m_sentForm = false;
};
