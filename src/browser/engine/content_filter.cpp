#include "browser/engine/content_filter.h"

#include <algorithm>
#include <array>
#include <QFileInfo>
#include <QHostAddress>

#include "browser/engine/page_content.h"
#include "browser/engine/policy.h"

namespace {

constexpr std::array SoundEndings{"aac", "aif", "aiff", "au",   "flac", "m4a", "mid", "midi", "mka", "mp2",
                                  "mp3", "oga", "ogg",  "opus", "snd",  "spx", "wav", "wma",  "weba"};

// The engine treats the machine's own addresses as secure whatever their scheme is.
bool IsLoopback(const QString &host) {
  return host == QLatin1String("localhost") || host.endsWith(QLatin1String(".localhost")) ||
         QHostAddress(host).isLoopback();
}

// Links to files, and what the user saves, count as pages.
bool IsDocument(int resourceType) {
  return resourceType == QWebEngineUrlRequestInfo::ResourceTypeMainFrame ||
         resourceType == QWebEngineUrlRequestInfo::ResourceTypeSubFrame ||
         resourceType == QWebEngineUrlRequestInfo::ResourceTypeObject;
}

}  // namespace

TDownloadControlOptionSet ContentKindOf(int resourceType, const QUrl &url) {
  switch (resourceType) {
    case QWebEngineUrlRequestInfo::ResourceTypeImage:
      return TDownloadControlOption::Images;
    case QWebEngineUrlRequestInfo::ResourceTypeMedia: {
      if (url.fragment() == SoundMark()) return TDownloadControlOption::BackgroundSounds;
      const QString ending = QFileInfo(url.path()).suffix().toLower();
      const bool sound = std::any_of(SoundEndings.begin(), SoundEndings.end(),
                                     [&](const char *known) { return ending == QLatin1String(known); });
      return sound ? TDownloadControlOption::BackgroundSounds : TDownloadControlOption::Videos;
    }
    default:
      return {};
  }
}

void TContentFilter::interceptRequest(QWebEngineUrlRequestInfo &info) {
  if (info.resourceType() == QWebEngineUrlRequestInfo::ResourceTypeMainFrame) {
    m_sawRequest = true;
    m_sentForm = info.requestMethod() == QByteArrayLiteral("POST");
  }
  const QUrl url = info.requestUrl();
  if ((url.scheme() == QLatin1String("https") || url.scheme() == QLatin1String("wss")) &&
      m_engine.Certificates().IsTakenBack(url.host())) {
    info.block(true);
    return;
  }
  const TDownloadControlOptionSet kind = ContentKindOf(info.resourceType(), url);
  if (kind && ((m_allowed & ContentKindsOf(m_engine.Policy().PermissionsOf(info.firstPartyUrl()))) & kind) == 0) {
    info.block(true);
    return;
  }
  if (IsDocument(info.resourceType())) Q_EMIT DocumentRequested(url);
  if (info.resourceType() == QWebEngineUrlRequestInfo::ResourceTypeMainFrame) Q_EMIT PageRequested();
  if (url.scheme() == QLatin1String("http") && info.firstPartyUrl().scheme() == QLatin1String("https") &&
      info.resourceType() != QWebEngineUrlRequestInfo::ResourceTypeMainFrame && !IsLoopback(url.host())) {
    Q_EMIT InsecurePartRequested();
  }
}
