#include "browser/tabs/tab_caption.h"

namespace {

constexpr int FixedCut = 50;

QString Cut(const QString &title, int length) {
  // A surrogate pair is never torn in two: half of one would show as a box.
  if (title.at(length - 1).isHighSurrogate()) --length;
  return title.left(length) + QStringLiteral("...");
}

}  // namespace

QString TabCaption(const QString &title, const QString &stickyName, int limit, const QString &blankText) {
  QString caption = stickyName;
  if (caption.isEmpty()) {
    if (limit > 0 && limit < title.length()) {
      caption = Cut(title, limit);
    } else if (title.length() > FixedCut) {
      caption = Cut(title, FixedCut);
    } else {
      caption = title;
    }
  }
  if (caption == QLatin1String("about:blank")) caption = blankText;
  return caption.replace(QLatin1Char('&'), QLatin1String("&&"));
}
