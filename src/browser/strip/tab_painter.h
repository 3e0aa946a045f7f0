#pragma once

#include <QColor>
#include <QFontMetrics>
#include <QIcon>
#include <QPalette>
#include <QRect>
#include <QString>

class QPainter;

// The measures of a strip, all from the font and the style's icon size, in device-independent pixels.
struct TTabMetrics {
  TTabMetrics(const QFontMetrics &font, int iconSize);

  int iconSize;
  int closeSize;
  int rowHeight;
  int narrowest;  // an icon, a few letters and the close button
  int widest;
  int edge;  // the line between pages and strip

  // How wide a tab with this text wants to be. The place of the close button is always kept, so that nothing jumps
  // when the mouse passes over; so is that of the image when there may be one.
  [[nodiscard]] int WidthOf(const QFontMetrics &font, const QString &text, bool hasImage) const;
};

// The parts of a tab, mirrored with the reading direction.
struct TTabParts {
  TTabParts(const TTabMetrics &metrics, const QRect &tab, bool hasImage, Qt::LayoutDirection direction);

  QRect image;
  QRect text;
  QRect close;
};

// What one tab looks like at one moment.
struct TTabLook {
  QRect rect;
  QString text;  // already cut to its place
  QIcon image;
  bool isMark = false;    // the image says something of the page's state, and is to be seen on any ground
  bool hasImage = false;  // the place is kept, even if nothing is drawn there
  bool active = false;
  bool hovered = false;
  bool closeHovered = false;
  bool closePressed = false;
  bool keyboardFocus = false;
  bool dropTarget = false;
};

// Draws tabs: the active one in the window's own colour with a line of the highlight colour, the others in the two
// inactive colours; round corners away from the pages.
class TTabPainter final {
 public:
  TTabPainter(QPainter &painter, const TTabMetrics &metrics, const QPalette &palette, Qt::LayoutDirection direction,
              bool tabsDown);

  QColor inactiveTab;
  QColor inactiveFont;

  void DrawBackground(const QRect &strip);
  void DrawTab(const TTabLook &look);

 private:
  void DrawMark(const QIcon &mark, const QRect &place, const QColor &ground);
  void DrawCross(const QRect &place, const QColor &color, bool hovered, bool pressed);

  QPainter &m_painter;
  const TTabMetrics &m_metrics;
  const QPalette &m_palette;
  Qt::LayoutDirection m_direction;
  bool m_tabsDown;
};
