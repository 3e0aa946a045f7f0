#include "chrome/status_panel_face.h"

#include <algorithm>
#include <QIcon>
#include <QPainter>
#include <QStyle>
#include <QWidget>

namespace {

constexpr int IconSize = 16;
constexpr int TextLeft = 19;
constexpr int TextTop = 1;
constexpr int RightMargin = 4;

}  // namespace

QSize StatusPanelFace::Size(const QWidget &panel, const QString &text) {
  const QFontMetrics metrics = panel.fontMetrics();
  return {TextLeft + metrics.horizontalAdvance(text) + RightMargin, std::max(IconSize, metrics.height() + TextTop)};
}

void StatusPanelFace::Paint(QWidget &panel, const QIcon &icon, const QString &text) {
  QPainter painter(&panel);
  const QRect all = panel.rect();
  const Qt::LayoutDirection direction = panel.layoutDirection();
  const QRect words(TextLeft, TextTop, all.width() - TextLeft, all.height() - TextTop);
  icon.paint(&painter, QStyle::visualRect(direction, all, {0, 0, IconSize, IconSize}));
  painter.setPen(panel.palette().color(QPalette::WindowText));
  painter.drawText(QStyle::visualRect(direction, all, words),
                   QStyle::visualAlignment(direction, Qt::AlignLeft | Qt::AlignTop),
                   painter.fontMetrics().elidedText(text, Qt::ElideRight, words.width()));
}
