#include "chrome/favorites/favorite_menu_style.h"

#include <QScreen>
#include <QStyleOptionMenuItem>
#include <QWidget>

namespace {

constexpr int ItemsLess = 6;

}  // namespace

int TFavoriteMenuStyle::styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                                  QStyleHintReturn *data) const {
  if (hint == SH_Menu_Scrollable) return m_breaks ? 0 : 1;
  return QProxyStyle::styleHint(hint, option, widget, data);
}

int TFavoriteMenuStyle::pixelMetric(PixelMetric metric, const QStyleOption *option, const QWidget *widget) const {
  const int plain = QProxyStyle::pixelMetric(metric, option, widget);
  // A menu takes the height between these frames for the height of its columns. It also keeps as far from the edges of
  // the screen; only then it asks without an option.
  if (metric != PM_MenuDesktopFrameWidth || !m_breaks || option == nullptr || widget == nullptr) return plain;
  const int around = 2 * QProxyStyle::pixelMetric(PM_MenuVMargin, option, widget) +
                     2 * QProxyStyle::pixelMetric(PM_MenuPanelWidth, option, widget);
  const int column = ColumnLength(*widget) * ItemHeight(*widget) + around;
  return qMax(plain, (widget->screen()->geometry().height() - column) / 2);
}

int TFavoriteMenuStyle::ItemHeight(const QWidget &menu) const {
  QStyleOptionMenuItem item;
  item.initFrom(&menu);
  item.menuItemType = QStyleOptionMenuItem::Normal;
  item.font = menu.font();
  item.fontMetrics = menu.fontMetrics();
  item.maxIconWidth = QProxyStyle::pixelMetric(PM_SmallIconSize, &item, &menu);
  const QSize contents(item.maxIconWidth, qMax(menu.fontMetrics().height(), item.maxIconWidth));
  return qMax(1, sizeFromContents(CT_MenuItem, &item, contents, &menu).height());
}

int TFavoriteMenuStyle::ColumnLength(const QWidget &menu) const {
  return qMax(1, menu.screen()->geometry().height() / ItemHeight(menu) - ItemsLess);
}
