#include "browser/engine/engine_flags.h"

#include <QByteArrayList>
#include <QGuiApplication>
#include <QPalette>

#include "platform/desktop_wishes.h"

namespace {

constexpr const char *Accessibility = "QTWEBENGINE_ENABLE_LINUX_ACCESSIBILITY";
constexpr const char *Flags = "QTWEBENGINE_CHROMIUM_FLAGS";

#if QT_VERSION < QT_VERSION_CHECK(6, 8, 0)
// From 6.8 on the engine looks at the desktop itself.
bool IsDark(const QPalette &palette) {
  return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
}
#endif

}  // namespace

void SetEngineFlags(const TDesktopWishes &wishes) {
  // It makes every page slower, so without a listener it stays off.
  if (wishes.assistiveTechnology && !qEnvironmentVariableIsSet(Accessibility)) qputenv(Accessibility, "1");
  QByteArrayList flags;
  if (wishes.reducedMotion) flags.append("--force-prefers-reduced-motion");
#if QT_VERSION < QT_VERSION_CHECK(6, 8, 0)
  if (IsDark(QGuiApplication::palette())) flags.append("--blink-settings=preferredColorScheme=0");
#endif
  if (flags.isEmpty()) return;
  // Of a flag that is there twice the last counts.
  if (const QByteArray own = qgetenv(Flags); !own.isEmpty()) flags.append(own);
  qputenv(Flags, flags.join(' '));
}
