#include "browser/strip/tab_painter.h"

#include <algorithm>
#include <QPainter>
#include <QPainterPath>
#include <QPixmapCache>
#include <QStyle>
#include "ui/contrast.h"

namespace {
constexpr int kSidePadding = 8;
constexpr int kVerticalPadding = 8;
constexpr int kImageGap = 9;  // wide enough for what a mark juts out
constexpr int kCloseGap = 4;
constexpr int kMarkJut = 6;
constexpr int kMarkHalo = 1;
constexpr int kEdge = 1;
constexpr int kFarInset = 2;  // between a tab and the strip's edge that looks away from the pages
constexpr int kHighlightLine = 2;
constexpr int kFocusInset = 3;
constexpr int kWidestText = 40;     // average characters: a caption is cut at 35 unless the user wants otherwise
constexpr int kLeastWidth = 72;     // the tab of an empty caption can still be hit, beside its close button
constexpr int kLeastText = 12;      // pixels beside a close button
constexpr int kMeasuredText = 300;  // characters; the rest of a giant caption cannot show anyway
constexpr qreal kRadius = 5;
constexpr qreal kCrossShare = 0.28;  // of the close button's size, from its edges
constexpr qreal kCrossPen = 1.5;
constexpr qreal kStripShade = 0.06;  // of the text's colour in the strip's ground
constexpr qreal kHairlineShade = 0.22;
constexpr qreal kHairlineHeight = 0.5;  // of the row's

QColor Mixed(const QColor &one, const QColor &other, qreal share) {
  const auto part = [share](int a, int b) { return static_cast<int>(a + (b - a) * share); };
  return QColor(part(one.red(), other.red()), part(one.green(), other.green()), part(one.blue(), other.blue()));
}

// A rectangle with two round corners on the side that looks away from the pages, open towards them.
QPainterPath TabShape(const QRectF &rect, bool tabsDown) {
  const QRectF far = tabsDown ? rect.adjusted(0, -2 * kRadius, 0, 0) : rect.adjusted(0, 0, 0, 2 * kRadius);
  QPainterPath path;
  path.addRoundedRect(far, kRadius, kRadius);
  return path;
}
}  // namespace

TTabMetrics::TTabMetrics(const QFontMetrics &font, int iconSizeOfStyle)
    : iconSize(iconSizeOfStyle),
      markSize(iconSizeOfStyle * 3 / 4),
      closeSize(std::max(iconSizeOfStyle, 14)),
      rowHeight(std::max(font.height(), iconSizeOfStyle) + 2 * kVerticalPadding),
      narrowest(2 * kSidePadding + iconSize),
      widest(2 * kSidePadding + iconSize + closeSize + kImageGap + kCloseGap + kWidestText * font.averageCharWidth()),
      edge(kEdge) {}

int TTabMetrics::WidthOf(const QFontMetrics &font, const QString &text, bool hasImage) const {
  const int around = 2 * kSidePadding + kCloseGap + closeSize + (hasImage ? iconSize + kImageGap : 0);
  // One pixel more than measured: rounding must not cut a text that was promised its full width.
  const int width = around + font.horizontalAdvance(text.left(kMeasuredText)) + 1;
  return std::clamp(width, std::min(kLeastWidth, widest), widest);
}

TTabParts::TTabParts(const TTabMetrics &metrics, const QRect &tab, bool hasImage, bool showsClose,
                     Qt::LayoutDirection direction) {
  const auto mirrored = [&](const QRect &part) { return QStyle::visualRect(direction, tab, part); };
  const auto middle = [&](int size) { return tab.y() + (tab.height() - size) / 2; };
  int left = tab.x() + kSidePadding;
  int right = tab.x() + tab.width() - kSidePadding;
  if (hasImage && right - left >= metrics.iconSize) {
    const QRect place(left, middle(metrics.iconSize), metrics.iconSize, metrics.iconSize);
    const QSize size(metrics.markSize, metrics.markSize);
    image = mirrored(place);
    mark = mirrored(QRect(QPoint(place.x() + place.width() + kMarkJut - size.width(),
                                 place.y() + place.height() + kMarkJut / 2 - size.height()),
                          size));
    left += metrics.iconSize + kImageGap;
  }
  if (right - left >= metrics.closeSize + kCloseGap + (hasImage ? kLeastText : 0)) {
    const int place = right - metrics.closeSize;
    close = mirrored(QRect(place, middle(metrics.closeSize), metrics.closeSize, metrics.closeSize));
    if (showsClose) right = place - kCloseGap;
  }
  if (right > left) text = mirrored(QRect(left, tab.y(), right - left, tab.height()));
}

TTabPainter::TTabPainter(QPainter &painter, const TTabMetrics &metrics, const QPalette &palette,
                         Qt::LayoutDirection direction, bool tabsDown)
    : m_painter(painter), m_metrics(metrics), m_palette(palette), m_direction(direction), m_tabsDown(tabsDown) {
  m_painter.setRenderHint(QPainter::Antialiasing);
}

QColor TTabPainter::GroundOf(const QPalette &palette) {
  return Mixed(palette.color(QPalette::Window), palette.color(QPalette::WindowText), kStripShade);
}

QColor TTabPainter::Ground() const {
  return GroundOf(m_palette);
}

void TTabPainter::DrawBackground(const QRect &strip) {
  m_painter.fillRect(strip, Ground());
  const int y = m_tabsDown ? strip.y() : strip.y() + strip.height() - m_metrics.edge;
  m_painter.fillRect(QRect(strip.x(), y, strip.width(), m_metrics.edge),
                     Mixed(Ground(), m_palette.color(QPalette::WindowText), kHairlineShade));
}

void TTabPainter::DrawTab(const TTabLook &look) {
  const QColor plainInk = m_palette.color(look.active ? QPalette::Text : QPalette::WindowText);
  const QColor ink = look.active || !inactiveFont.isValid() ? plainInk : inactiveFont;
  QColor ground = look.active ? m_palette.color(QPalette::Base) : inactiveTab.isValid() ? inactiveTab : Ground();
  if (look.hovered && !look.active) ground = Mixed(ground, m_palette.color(QPalette::Highlight), 0.15);
  if (look.dropTarget) ground = Mixed(ground, m_palette.color(QPalette::Highlight), 0.4);
  DrawBody(look, ground, ink);

  const bool showsClose = look.active || look.hovered;
  const TTabParts parts(m_metrics, look.rect, look.hasImage, showsClose, m_direction);
  if (!look.image.isNull()) look.image.paint(&m_painter, parts.image);
  if (!look.mark.isNull() && !parts.mark.isEmpty()) {
    // It stands on the tab's colour, whatever the image below it is like.
    m_painter.setPen(Qt::NoPen);
    m_painter.setBrush(ground);
    m_painter.drawEllipse(parts.mark.adjusted(-kMarkHalo, -kMarkHalo, kMarkHalo, kMarkHalo));
    DrawMark(look.mark, parts.mark, ground);
  }
  if (!look.text.isEmpty() && !parts.text.isEmpty()) {
    m_painter.setPen(ink);
    const Qt::Alignment side = QStyle::visualAlignment(m_direction, Qt::AlignLeft);
    m_painter.drawText(parts.text, static_cast<int>(side | Qt::AlignVCenter) | Qt::TextSingleLine, look.text);
  }
  if (showsClose && !parts.close.isEmpty()) DrawCross(parts.close, ink, look.closeHovered, look.closePressed);
  if (look.keyboardFocus) {
    const QRectF ring = QRectF(look.rect).adjusted(kFocusInset, kFocusInset, -kFocusInset, -kFocusInset);
    m_painter.setPen(QPen(m_palette.color(QPalette::Highlight), 1.5));
    m_painter.setBrush(Qt::NoBrush);
    m_painter.drawRoundedRect(ring, kRadius / 2, kRadius / 2);
  }
}

void TTabPainter::DrawBody(const TTabLook &look, const QColor &ground, const QColor &ink) {
  const QRect body = m_tabsDown ? look.rect.adjusted(0, 0, 0, -kFarInset) : look.rect.adjusted(0, kFarInset, 0, 0);
  const bool isFlat = !look.active && !look.hovered && !look.dropTarget && !inactiveTab.isValid();
  const QColor hairline = Mixed(ground, ink, kHairlineShade);
  if (isFlat) {
    const int height = qRound(body.height() * kHairlineHeight);
    const QRect line(body.x() + body.width() - 1, body.y() + (body.height() - height) / 2, 1, height);
    m_painter.fillRect(QStyle::visualRect(m_direction, body, line), hairline);
    return;
  }
  m_painter.save();
  m_painter.setClipRect(body, Qt::IntersectClip);
  const QPainterPath shape = TabShape(QRectF(body).adjusted(0.5, 0.5, -0.5, -0.5), m_tabsDown);
  m_painter.fillPath(shape, ground);
  if (look.active) {
    const int y = m_tabsDown ? body.y() + body.height() - kHighlightLine : body.y();
    m_painter.save();
    m_painter.setClipRect(QRect(body.x(), y, body.width(), kHighlightLine), Qt::IntersectClip);
    m_painter.fillPath(shape, m_palette.color(QPalette::Highlight));
    m_painter.restore();
  }
  m_painter.strokePath(shape, QPen(hairline, 1));
  m_painter.restore();
}

// The colours of the inactive tabs are the user's own, so no drawing stands out from all of them by itself.
void TTabPainter::DrawMark(const QIcon &mark, const QRect &place, const QColor &ground) {
  if (place.isEmpty()) return;
  const qreal ratio = m_painter.device()->devicePixelRatio();
  const QString key =
      QStringLiteral("mark %1 %2 %3 %4").arg(mark.cacheKey()).arg(ground.rgb()).arg(place.width()).arg(ratio);
  QPixmap raised;
  if (!QPixmapCache::find(key, &raised)) {
    QImage image = mark.pixmap(place.size(), ratio).toImage().convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) {
        const QColor color = image.pixelColor(x, y);
        if (color.alpha() > 0) image.setPixelColor(x, y, Contrast::Raised(color, ground));
      }
    }
    raised = QPixmap::fromImage(image);
    QPixmapCache::insert(key, raised);
  }
  QRect middle(QPoint(), raised.deviceIndependentSize().toSize());
  middle.moveCenter(place.center());
  m_painter.drawPixmap(middle, raised);
}

void TTabPainter::DrawCross(const QRect &place, const QColor &color, bool hovered, bool pressed) {
  if (hovered || pressed) {
    QColor glow = color;
    glow.setAlphaF(pressed ? 0.35 : 0.18);
    m_painter.setPen(Qt::NoPen);
    m_painter.setBrush(glow);
    m_painter.drawRoundedRect(place, 3, 3);
  }
  const qreal inset = place.width() * kCrossShare;
  const QRectF cross = QRectF(place).adjusted(inset, inset, -inset, -inset);
  m_painter.setPen(QPen(color, kCrossPen, Qt::SolidLine, Qt::RoundCap));
  m_painter.drawLine(cross.topLeft(), cross.bottomRight());
  m_painter.drawLine(cross.topRight(), cross.bottomLeft());
}
