#pragma once

#include <QProxyStyle>

// The toolkit's own style ("fusion"), made plain where it is not: buttons of bars and grips show the keyboard as
// clearly in dark colours as in light ones, boxes to tick have an outline that can be seen, rows of menus and lists are
// high enough to be hit, drawings in a selected row have the ink of its text, and a button that opens a menu
// as a whole has no second small arrow in its corner. Styles that belong to a desktop are left as they are.
class TControlStyle final : public QProxyStyle {
  Q_OBJECT

 public:
  static constexpr int LeastRow = 24;  // pixels

  TControlStyle();
  // For the whole program, where it applies. Once, after the application has been made.
  static void Install();

  using QProxyStyle::polish;
  // Makes the hints in empty boxes readable where the desktop has no colour for them.
  void polish(QPalette &palette) override;
  void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *widget) const override;
  void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                   const QWidget *widget) const override;
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex *option, QPainter *painter,
                          const QWidget *widget) const override;
  [[nodiscard]] QSize sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &contents,
                                       const QWidget *widget) const override;
};
