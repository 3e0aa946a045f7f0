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
  int markSize;
  int closeSize;
  int rowHeight;
  int narrowest;  // just the icon
  int widest;
  int edge;  // the line between pages and strip

  // How wide a tab with this text wants to be, its close button included, so that nothing jumps when the mouse passes
  // over; and its image, when there may be one.
  [[nodiscard]] int WidthOf(const QFontMetrics &font, const QString &text, bool hasImage) const;
};

// The parts of a tab, mirrored with the reading direction. In a narrow tab the text has the room of the close button as
// long as that does not show; a very narrow one has no close button at all.
struct TTabParts {
  TTabParts(const TTabMetrics &metrics, const QRect &tab, bool hasImage, bool showsClose,
            Qt::LayoutDirection direction);

  QRect image;
  QRect mark;  // at the image's lower corner, partly over it
  QRect text;
  QRect close;
};

// What one tab looks like at one moment.
struct TTabLook {
  QRect rect;
  QString text;  // already cut to its place
  QIcon image;
  QIcon mark;             // says something of the page's state, and is to be seen on any ground; may be null
  bool hasImage = false;  // the place is kept, even if nothing is drawn there
  bool active = false;
  bool hovered = false;
  bool closeHovered = false;
  bool closePressed = false;
  bool keyboardFocus = false;
  bool dropTarget = false;
};

// Draws tabs: the active one in the colour of the page area that it touches, with a line of the highlight colour and
// round corners away from the pages; the others flat, in the two inactive colours.
class TTabPainter final {
 public:
  TTabPainter(QPainter &painter, const TTabMetrics &metrics, const QPalette &palette, Qt::LayoutDirection direction,
              bool tabsDown);

  // The ground of a strip whose tabs have no colours of their own.
  [[nodiscard]] static QColor GroundOf(const QPalette &palette);

  // Where these are not valid, the tabs have the strip's own colour, with hairlines between them.
  QColor inactiveTab;
  QColor inactiveFont;

  void DrawBackground(const QRect &strip);
  void DrawTab(const TTabLook &look);

 private:
  [[nodiscard]] QColor Ground() const;
  void DrawBody(const TTabLook &look, const QColor &ground, const QColor &ink);
  void DrawMark(const QIcon &mark, const QRect &place, const QColor &ground);
  void DrawCross(const QRect &place, const QColor &color, bool hovered, bool pressed);

  QPainter &m_painter;
  const TTabMetrics &m_metrics;
  const QPalette &m_palette;
  Qt::LayoutDirection m_direction;
  bool m_tabsDown;
};
