#include <QGuiApplication>
#include <QScreen>

#include "config/settings_table.h"
#include "platform/product_info.h"

namespace SettingRule {

namespace {

constexpr int ScreenMargin = 40;
// Without a screen (a program that shows no windows) some size must still be told.
constexpr QSize NoScreen(1024, 768);

QSize AvailableSize() {
  const QScreen *screen = QGuiApplication::primaryScreen();
  return screen != nullptr ? screen->availableSize() : NoScreen;
}

}  // namespace

int ClampNewAction(int action) {
  return qBound(0, action, 2);
}

int ClampHalvexBarWidth(int width) {
  return width < 0 ? Setting::HalvexBarWidth.fallback : width;
}

int ClampHistoryDays(int days) {
  return qMax(0, days);
}

int ClampSleepMinutes(int minutes) {
  return qMax(0, minutes);
}

int DefaultWindowWidth() {
  return AvailableSize().width() - ScreenMargin;
}

int DefaultWindowHeight() {
  return AvailableSize().height() - ScreenMargin;
}

QString DefaultSearchBar() {
  return TProductInfo::Load().searchPanelPage;
}

}  // namespace SettingRule
