#include "browser/downloads/download_delegate.h"

#include <QPainter>
#include <QWidget>

#include "browser/downloads/download_list.h"

namespace {

constexpr int Margin = 8;
constexpr int Gap = 4;
constexpr int BarHeight = 6;

bool IsUnderWay(const QModelIndex &index) {
  const auto state = TDownloadState(index.data(TDownloadList::StateRole).toInt());
  return state == TDownloadState::Running || state == TDownloadState::Paused;
}

int IconSize(const QStyleOptionViewItem &option) {
  return option.widget->style()->pixelMetric(QStyle::PM_LargeIconSize, &option, option.widget);
}

// A bar of our own: styles differ in how small they can draw theirs. With an unknown total it is filled evenly.
void PaintBar(QPainter *painter, const QRect &place, const QStyleOptionViewItem &option, int percent, bool mirrored) {
  const bool selected = option.state.testFlag(QStyle::State_Selected);
  const QColor filled = option.palette.color(selected ? QPalette::HighlightedText : QPalette::Highlight);
  QColor ground = option.palette.color(selected ? QPalette::HighlightedText : QPalette::Text);
  ground.setAlphaF(0.25F);
  painter->setPen(Qt::NoPen);
  painter->setBrush(ground);
  painter->drawRoundedRect(place, BarHeight / 2.0, BarHeight / 2.0);
  if (percent < 0) {
    painter->setBrush(QBrush(filled, Qt::BDiagPattern));
    painter->drawRoundedRect(place, BarHeight / 2.0, BarHeight / 2.0);
    return;
  }
  QRect done = place;
  done.setWidth(place.width() * percent / 100);
  if (mirrored) done.moveRight(place.right());
  painter->setBrush(filled);
  if (percent > 0) painter->drawRoundedRect(done, BarHeight / 2.0, BarHeight / 2.0);
}

}  // namespace

void TDownloadDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const {
  QStyleOptionViewItem line = option;
  initStyleOption(&line, index);
  const QIcon icon = line.icon.isNull() ? line.widget->style()->standardIcon(QStyle::SP_FileIcon) : line.icon;
  const QString name = line.text;
  line.text.clear();
  line.icon = QIcon();
  line.features &= ~QStyleOptionViewItem::HasDecoration;
  line.widget->style()->drawControl(QStyle::CE_ItemViewItem, &line, painter, line.widget);

  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  const Qt::LayoutDirection direction = line.direction;
  const QRect inner = line.rect.adjusted(Margin, Margin, -Margin, -Margin);
  const int iconSize = IconSize(line);
  const QRect iconRect(inner.left(), inner.center().y() - iconSize / 2, iconSize, iconSize);
  icon.paint(painter, QStyle::visualRect(direction, inner, iconRect));

  QRect text = inner.adjusted(iconSize + Margin, 0, 0, 0);
  const int lineHeight = line.fontMetrics.height();
  const bool selected = line.state.testFlag(QStyle::State_Selected);
  painter->setPen(line.palette.color(selected ? QPalette::HighlightedText : QPalette::Text));
  const auto drawLine = [&](const QRect &place, const QFont &font, const QString &words, Qt::TextElideMode elide) {
    painter->setFont(font);
    painter->drawText(QStyle::visualRect(direction, inner, place),
                      int(QStyle::visualAlignment(direction, Qt::AlignLeft | Qt::AlignVCenter)) | Qt::TextSingleLine,
                      QFontMetrics(font).elidedText(words, elide, place.width()));
  };
  QFont bold = line.font;
  bold.setBold(true);
  const QString time = index.data(TDownloadList::TimeRole).toString();
  const int timeWidth = line.fontMetrics.horizontalAdvance(time);
  const QRect first(text.topLeft(), QSize(text.width(), lineHeight));
  drawLine(first.adjusted(0, 0, -timeWidth - Margin, 0), bold, name, Qt::ElideMiddle);
  drawLine(first.adjusted(first.width() - timeWidth, 0, 0, 0), line.font, time, Qt::ElideNone);
  text.setTop(text.top() + lineHeight + Gap);
  if (IsUnderWay(index)) {
    const QRect bar(text.topLeft(), QSize(text.width(), BarHeight));
    const QPen pen = painter->pen();
    PaintBar(painter, QStyle::visualRect(direction, inner, bar), line, index.data(TDownloadList::PercentRole).toInt(),
             direction == Qt::RightToLeft);
    painter->setPen(pen);
    text.setTop(text.top() + BarHeight + Gap);
  }
  drawLine(QRect(text.topLeft(), QSize(text.width(), lineHeight)), line.font,
           index.data(TDownloadList::StatusRole).toString(), Qt::ElideRight);
  painter->restore();
}

QSize TDownloadDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &) const {
  const int texts = 2 * option.fontMetrics.height() + 2 * Gap + BarHeight;
  return {IconSize(option) * 6, qMax(texts, IconSize(option)) + 2 * Margin};
}
