#include "browser/engine/page_content.h"

#include <QUuid>
#include <QWebEnginePage>
#include <QWebEngineSettings>

#include "browser/engine/own_scripts.h"
#include "browser/engine/policy.h"

namespace {

// Each runs in documents in which its kind of content is switched off.
struct TContentScript {
  const char *file;
  quint32 world;
  bool TPagePermissions::*allowed;
};
constexpr TContentScript Scripts[] = {
    {"no_images.js", ScriptWorld::Own, &TPagePermissions::images},
    {"no_videos.js", ScriptWorld::Own, &TPagePermissions::videos},
    {"no_video_sources.js", QWebEngineScript::MainWorld, &TPagePermissions::videos},
    {"no_motion.js", ScriptWorld::Own, &TPagePermissions::animations},
    {"no_script_motion.js", QWebEngineScript::MainWorld, &TPagePermissions::animations},
#if QT_VERSION < QT_VERSION_CHECK(6, 8, 0)
    {"still_pictures.js", ScriptWorld::Own, &TPagePermissions::animations},
#endif
};

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
    const bool isWanted = !(may.*one.allowed);
    if (isWanted == OwnScript::IsIn(page, one.file)) continue;
    if (isWanted) {
      OwnScript::Insert(page, one.file, one.world, {{"SoundMark", SoundMark()}});
    } else {
      OwnScript::Remove(page, one.file);
    }
  }
}
