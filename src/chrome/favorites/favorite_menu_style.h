#pragma once

#include <QProxyStyle>

// Menus that scroll where the screen is not high enough, or are broken into columns.
class TFavoriteMenuStyle final : public QProxyStyle {
  Q_OBJECT

 public:
  void SetBreaks(bool breaks) { m_breaks = breaks; }

  int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                QStyleHintReturn *data) const override;
  int pixelMetric(PixelMetric metric, const QStyleOption *option, const QWidget *widget) const override;
  // Of one item of that menu, in pixels.
  [[nodiscard]] int ItemHeight(const QWidget &menu) const;
  // How many items stand in one column: as many as the screen is high, less 6.
  [[nodiscard]] int ColumnLength(const QWidget &menu) const;

 private:
  bool m_breaks = false;
};
