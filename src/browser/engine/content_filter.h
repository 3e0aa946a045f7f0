#pragma once

#include <QWebEngineUrlRequestInterceptor>

#include "browser/engine/engine.h"

// Which of the switchable kinds a request is for; no flag for everything else. Sounds and videos are
// one kind to the engine and are told apart by the file name's ending; a name that says nothing counts as a video,
// which is what most players load.
[[nodiscard]] TDownloadControlOptionSet ContentKindOf(int resourceType, const QUrl &url);

// Keeps one page from fetching the kinds of content that are switched off.
class TContentFilter final : public QWebEngineUrlRequestInterceptor {
  Q_OBJECT

 public:
  explicit TContentFilter(QObject *parent = nullptr) : QWebEngineUrlRequestInterceptor(parent) {}

  // The kinds that the page being shown may fetch.
  void SetAllowed(TDownloadControlOptionSet allowed) { m_allowed = allowed; }

  void interceptRequest(QWebEngineUrlRequestInfo &info) override;

 Q_SIGNALS:
  // A page that came securely fetched a part of itself in the clear.
  void InsecurePartRequested();

 private:
  TDownloadControlOptionSet m_allowed = AllDownloadControlOptions;
};
