#include "browser/engine/content_filter.h"

#include <algorithm>
#include <array>
#include <QFileInfo>
#include <QHostAddress>

#include "browser/engine/policy.h"

namespace {

constexpr std::array SoundEndings{"aac", "aif", "aiff", "au",   "flac", "m4a", "mid", "midi", "mka",
                                  "mp2", "mp3", "oga",  "opus", "snd",  "spx", "wav", "wma",  "weba"};

// The engine treats the machine's own addresses as secure whatever their scheme is.
bool IsLoopback(const QString &host) {
  return host == QLatin1String("localhost") || host.endsWith(QLatin1String(".localhost")) ||
         QHostAddress(host).isLoopback();
}

TDownloadControlOptionSet KindsOf(const TPagePermissions &permissions) {
  TDownloadControlOptionSet kinds;
  kinds.setFlag(TDownloadControlOption::Images, permissions.images);
  kinds.setFlag(TDownloadControlOption::Videos, permissions.videos);
  kinds.setFlag(TDownloadControlOption::BackgroundSounds, permissions.sounds);
  return kinds;
}

}  // namespace

TDownloadControlOptionSet ContentKindOf(int resourceType, const QUrl &url) {
  switch (resourceType) {
    case QWebEngineUrlRequestInfo::ResourceTypeImage:
      return TDownloadControlOption::Images;
    case QWebEngineUrlRequestInfo::ResourceTypeMedia: {
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
    m_sentForm = info.requestMethod() == QByteArrayLiteral("POST");
  }
  const TDownloadControlOptionSet kind = ContentKindOf(info.resourceType(), info.requestUrl());
  if (kind && ((m_allowed & KindsOf(m_engine.Policy().PermissionsOf(info.firstPartyUrl()))) & kind) == 0) {
    info.block(true);
    return;
  }
  if (info.resourceType() == QWebEngineUrlRequestInfo::ResourceTypeMainFrame) Q_EMIT PageRequested();
  const QUrl url = info.requestUrl();
  if (url.scheme() == QLatin1String("http") && info.firstPartyUrl().scheme() == QLatin1String("https") &&
      info.resourceType() != QWebEngineUrlRequestInfo::ResourceTypeMainFrame && !IsLoopback(url.host())) {
    Q_EMIT InsecurePartRequested();
  }
}
