#include "browser/tabs/tab_colors.h"

#include <QApplication>
#include <QPalette>

#include "browser/strip/page_control.h"
#include "config/options.h"

void ApplyTabColors(TZVPageControl &pages, const TZVOptions &options) {
  const QString scheme = options.Get(Setting::TabColorScheme);
  const QPalette palette = QApplication::palette();
  QColor tab = QColor::fromRgb(static_cast<QRgb>(options.Get(Setting::InactiveTabColor)));
  QColor font = QColor::fromRgb(static_cast<QRgb>(options.Get(Setting::InactiveFontColor)));
  if (scheme == QLatin1String("std")) {
    tab = palette.color(QPalette::Button);
    font = palette.color(QPalette::WindowText);
  } else if (scheme == QLatin1String("rev")) {
    // The palette has no colour for inactive title bars; the highlight of an inactive window is what stands for it.
    tab = palette.color(QPalette::Inactive, QPalette::Highlight);
    font = palette.color(QPalette::HighlightedText);
  }
  pages.SetInactiveTabColor(tab);
  pages.SetInactiveFontColor(font);
}
