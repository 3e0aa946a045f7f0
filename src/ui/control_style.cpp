#include "ui/control_style.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QPainter>
#include <QStyleOptionMenuItem>

#include "ui/contrast.h"
#include "ui/ink_icon.h"

namespace {

const QString StyleName = QStringLiteral("fusion");
constexpr qreal RingWidth = 2;
constexpr qreal RingRadius = 3;
constexpr float HintShare = 0.55F;  // of the text's colour

void DrawRing(QPainter &painter, const QStyleOption &option) {
  const QPalette &palette = option.palette;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(Qt::NoBrush);
  const QColor colour = Contrast::Raised(palette.color(QPalette::Highlight), palette.color(QPalette::Window));
  painter.setPen(QPen(colour, RingWidth));
  const qreal inset = RingWidth / 2;
  painter.drawRoundedRect(QRectF(option.rect).adjusted(inset, inset, -inset, -inset), RingRadius, RingRadius);
  painter.restore();
}

// What is drawn has no sizes, and has our colours. Pictures of pages have some, and keep theirs.
bool IsDrawn(const QIcon &icon) {
  return !icon.isNull() && icon.availableSizes().isEmpty();
}

}  // namespace

TControlStyle::TControlStyle() : QProxyStyle(StyleName) {}

void TControlStyle::Install() {
  if (QApplication::style()->name() == StyleName) QApplication::setStyle(new TControlStyle);
}

// The toolkit's own colour of hints is for light boxes, and stays when a desktop tells all colours but this one.
void TControlStyle::polish(QPalette &palette) {
  QProxyStyle::polish(palette);
  for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
    const QColor base = palette.color(group, QPalette::Base);
    const QColor hint = palette.color(group, QPalette::PlaceholderText);
    if (Contrast::Between(Contrast::Over(hint, base), base) >= Contrast::ForMarks) continue;
    QColor colour = palette.color(group, QPalette::Text);
    colour.setAlphaF(HintShare);
    palette.setColor(group, QPalette::PlaceholderText, colour);
  }
}

void TControlStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                                  const QWidget *widget) const {
  const QPalette &palette = option->palette;
  const QColor ground = palette.color(QPalette::Window);
  switch (element) {
    case PE_FrameFocusRect: {
      // Rows of lists are filled where they are chosen.
      if (qobject_cast<const QAbstractItemView *>(widget) != nullptr) break;
      if (!option->state.testFlag(State_KeyboardFocusChange)) return;
      DrawRing(*painter, *option);
      return;
    }
    case PE_PanelButtonCommand:
      // By itself the button that Enter presses looks as if it had the keyboard.
      QProxyStyle::drawPrimitive(element, option, painter, widget);
      if (option->state.testFlag(State_HasFocus) && option->state.testFlag(State_KeyboardFocusChange)) {
        DrawRing(*painter, *option);
      }
      return;
    case PE_IndicatorCheckBox: {
      QProxyStyle::drawPrimitive(element, option, painter, widget);
      if (option->state.testFlag(State_HasFocus)) return;
      painter->save();
      painter->setBrush(Qt::NoBrush);
      painter->setPen(Contrast::Raised(palette.color(QPalette::Mid), ground));
      painter->drawRect(option->rect.adjusted(0, 0, -1, -1));
      painter->restore();
      return;
    }
    default:
      break;
  }
  QProxyStyle::drawPrimitive(element, option, painter, widget);
}

void TControlStyle::drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                                const QWidget *widget) const {
  const bool isSelected = option->state.testFlag(State_Selected) && option->state.testFlag(State_Enabled);
  const qreal ratio = painter->device()->devicePixelRatioF();
  const auto *item = element == CE_MenuItem ? qstyleoption_cast<const QStyleOptionMenuItem *>(option) : nullptr;
  if (isSelected && item != nullptr && IsDrawn(item->icon)) {
    QStyleOptionMenuItem inked(*item);
    const int extent = pixelMetric(PM_SmallIconSize, option, widget);
    inked.icon = InkIcon(item->icon).pixmap(QSize(extent, extent), ratio, QIcon::Selected);
    QProxyStyle::drawControl(element, &inked, painter, widget);
    return;
  }
  const auto *row = element == CE_ItemViewItem ? qstyleoption_cast<const QStyleOptionViewItem *>(option) : nullptr;
  if (isSelected && row != nullptr && IsDrawn(row->icon)) {
    QStyleOptionViewItem inked(*row);
    const QPixmap picture = InkIcon(row->icon).pixmap(row->decorationSize, ratio, QIcon::Selected);
    inked.icon = QIcon();
    inked.icon.addPixmap(picture, QIcon::Normal);
    inked.icon.addPixmap(picture, QIcon::Selected);
    QProxyStyle::drawControl(element, &inked, painter, widget);
    return;
  }
  QProxyStyle::drawControl(element, option, painter, widget);
}

void TControlStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex *option, QPainter *painter,
                                       const QWidget *widget) const {
  const auto *button = control == CC_ToolButton ? qstyleoption_cast<const QStyleOptionToolButton *>(option) : nullptr;
  if (button == nullptr || button->features.testFlag(QStyleOptionToolButton::MenuButtonPopup)) {
    QProxyStyle::drawComplexControl(control, option, painter, widget);
    return;
  }
  QStyleOptionToolButton plain(*button);
  plain.features.setFlag(QStyleOptionToolButton::HasMenu, false);
  QProxyStyle::drawComplexControl(control, &plain, painter, widget);
}

QSize TControlStyle::sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &contents,
                                      const QWidget *widget) const {
  QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
  // An underlined letter stands apart from its neighbours, also where letters are joined; the toolkit does not reckon
  // with the room that this takes.
  if (type == CT_PushButton && option->direction == Qt::RightToLeft) {
    size.rwidth() += 2 * option->fontMetrics.averageCharWidth();
  }
  const auto *item = type == CT_MenuItem ? qstyleoption_cast<const QStyleOptionMenuItem *>(option) : nullptr;
  const bool isRow =
      type == CT_ItemViewItem || (item != nullptr && item->menuItemType != QStyleOptionMenuItem::Separator);
  return isRow ? size.expandedTo(QSize(0, LeastRow)) : size;
}
