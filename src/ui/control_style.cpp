#include "ui/control_style.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QPainter>
#include <QStyleOptionMenuItem>

#include "ui/contrast.h"

namespace {

const QString StyleName = QStringLiteral("fusion");
constexpr qreal RingWidth = 2;
constexpr qreal RingRadius = 3;

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

}  // namespace

TControlStyle::TControlStyle() : QProxyStyle(StyleName) {}

void TControlStyle::Install() {
  if (QApplication::style()->name() == StyleName) QApplication::setStyle(new TControlStyle);
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

QSize TControlStyle::sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &contents,
                                      const QWidget *widget) const {
  const QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
  const auto *item = type == CT_MenuItem ? qstyleoption_cast<const QStyleOptionMenuItem *>(option) : nullptr;
  const bool isRow =
      type == CT_ItemViewItem || (item != nullptr && item->menuItemType != QStyleOptionMenuItem::Separator);
  return isRow ? size.expandedTo(QSize(0, LeastRow)) : size;
}
