#include "browser/engine/page_content.h"

#include <QFile>
#include <QUuid>
#include <QWebEnginePage>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>
#include <QWebEngineSettings>

#include "browser/engine/policy.h"
#include "browser/engine/script_worlds.h"

namespace {

// Each runs in documents in which its kind of content is switched off.
struct TContentScript {
  const char *file;
  quint32 world;
  bool TPagePermissions::*allowed;
};
constexpr TContentScript Scripts[] = {
    {"no_images.js", ScriptWorld::Content, &TPagePermissions::images},
    {"no_videos.js", ScriptWorld::Content, &TPagePermissions::videos},
    {"no_video_sources.js", QWebEngineScript::MainWorld, &TPagePermissions::videos},
    {"no_motion.js", ScriptWorld::Content, &TPagePermissions::animations},
    {"no_script_motion.js", QWebEngineScript::MainWorld, &TPagePermissions::animations},
#if QT_VERSION < QT_VERSION_CHECK(6, 8, 0)
    {"still_pictures.js", ScriptWorld::Content, &TPagePermissions::animations},
#endif
};

QWebEngineScript ScriptOf(const TContentScript &one) {
  QWebEngineScript script;
  QFile file(QStringLiteral(":/pages/") + QLatin1String(one.file));
  if (!file.open(QIODevice::ReadOnly)) return script;
  script.setName(QLatin1String(one.file));
  script.setInjectionPoint(QWebEngineScript::DocumentCreation);
  script.setWorldId(one.world);
  script.setRunsOnSubFrames(true);
  script.setSourceCode(QString::fromUtf8(file.readAll()).replace(QLatin1String("{{SoundMark}}"), SoundMark()));
  return script;
}

}  // namespace

TDownloadControlOptionSet ContentKindsOf(const TPagePermissions &may) {
  TDownloadControlOptionSet kinds;
  kinds.setFlag(TDownloadControlOption::Images, may.images);
  kinds.setFlag(TDownloadControlOption::Videos, may.videos);
  kinds.setFlag(TDownloadControlOption::BackgroundSounds, may.sounds);
  return kinds;
}

const QString &SoundMark() {
  static const QString mark = QUuid::createUuid().toString(QUuid::WithoutBraces);
  return mark;
}

void ApplyContent(QWebEnginePage &page, const TPagePermissions &may) {
  page.settings()->setAttribute(QWebEngineSettings::AutoLoadImages, may.images);
  // Also what scripts make sound without loading anything.
  page.setAudioMuted(!may.sounds);
#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
  using TAnimation = QWebEngineSettings::ImageAnimationPolicy;
  page.settings()->setImageAnimationPolicy(may.animations ? TAnimation::Allow : TAnimation::Disallow);
#endif
  for (const TContentScript &one : Scripts) {
    const QList<QWebEngineScript> there = page.scripts().find(QLatin1String(one.file));
    const bool isWanted = !(may.*one.allowed);
    if (isWanted != there.isEmpty()) continue;
    if (isWanted) {
      page.scripts().insert(ScriptOf(one));
    } else {
      page.scripts().remove(there.first());
    }
  }
}
