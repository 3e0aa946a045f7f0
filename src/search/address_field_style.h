#pragma once

#include <QProxyStyle>

// The look of the address field, whatever the desktop's style is: one round field, in which text and arrow stand
// without frames of their own.
class TAddressFieldStyle final : public QProxyStyle {
  Q_OBJECT

 public:
  static constexpr int LeastHeight = 30;  // pixels

  TAddressFieldStyle() = default;

  void drawComplexControl(ComplexControl control, const QStyleOptionComplex *option, QPainter *painter,
                          const QWidget *widget) const override;
  [[nodiscard]] QRect subControlRect(ComplexControl control, const QStyleOptionComplex *option, SubControl part,
                                     const QWidget *widget) const override;
  [[nodiscard]] QSize sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &contents,
                                       const QWidget *widget) const override;
};
