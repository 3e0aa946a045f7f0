#include "search/address_field_style.h"

#include <QPainter>
#include <QStyleOptionComboBox>

#include "ui/contrast.h"

namespace {

constexpr int ArrowWidth = 24;  // pixels
constexpr int ArrowSize = 12;
constexpr int SidePadding = 6;
constexpr qreal Radius = 6;
constexpr qreal FocusPen = 2;

}  // namespace

void TAddressFieldStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex *option,
                                            QPainter *painter, const QWidget *widget) const {
  if (control != CC_ComboBox) return QProxyStyle::drawComplexControl(control, option, painter, widget);
  const QPalette &palette = option->palette;
  const bool hasFocus = option->state.testFlag(State_HasFocus);
  const qreal pen = hasFocus ? FocusPen : 1;
  const QColor base = palette.color(QPalette::Base);
  const QColor frame = hasFocus ? palette.color(QPalette::Highlight) : palette.color(QPalette::Mid);
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  painter->setPen(QPen(Contrast::Raised(frame, base), pen));
  painter->setBrush(base);
  painter->drawRoundedRect(QRectF(option->rect).adjusted(pen / 2, pen / 2, -pen / 2, -pen / 2), Radius, Radius);
  painter->restore();

  QStyleOption arrow(*option);
  const QRect button = subControlRect(CC_ComboBox, option, SC_ComboBoxArrow, widget);
  arrow.rect = QRect(0, 0, ArrowSize, ArrowSize);
  arrow.rect.moveCenter(button.center());
  proxy()->drawPrimitive(PE_IndicatorArrowDown, &arrow, painter, widget);
}

QRect TAddressFieldStyle::subControlRect(ComplexControl control, const QStyleOptionComplex *option, SubControl part,
                                         const QWidget *widget) const {
  if (control != CC_ComboBox) return QProxyStyle::subControlRect(control, option, part, widget);
  QRect rect = option->rect;
  switch (part) {
    case SC_ComboBoxArrow:
      rect.setLeft(rect.right() - ArrowWidth + 1);
      break;
    case SC_ComboBoxEditField:
      rect.adjust(SidePadding, int(FocusPen), -ArrowWidth, -int(FocusPen));
      break;
    case SC_ComboBoxFrame:
      break;
    default:
      return QProxyStyle::subControlRect(control, option, part, widget);
  }
  return visualRect(option->direction, option->rect, rect);
}

QSize TAddressFieldStyle::sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &contents,
                                           const QWidget *widget) const {
  const QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
  return type == CT_ComboBox ? size.expandedTo(QSize(0, LeastHeight)) : size;
}
