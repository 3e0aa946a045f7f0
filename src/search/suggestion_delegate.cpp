#include "search/suggestion_delegate.h"

#include <algorithm>
#include <cmath>
#include <QApplication>
#include <QPainter>
#include <QTextLayout>

#include "history/visit_words.h"
#include "search/row_delegate.h"
#include "ui/contrast.h"

namespace {

constexpr int Margin = 8;         // pixels
constexpr int Gap = 12;           // between title and address
constexpr int TextPadding = 5;    // above and below
constexpr int TitleTwelfths = 7;  // of the room, where both are long
constexpr qsizetype LongestText = 400;
constexpr float SoftShare = 0.65F;
constexpr QChar Ellipsis(0x2026);

QColor Mixed(const QColor &one, const QColor &other, float share) {
  const auto part = [share](float a, float b) { return a * share + b * (1 - share); };
  return QColor::fromRgbF(part(one.redF(), other.redF()), part(one.greenF(), other.greenF()),
                          part(one.blueF(), other.blueF()));
}

// One line of text with some of its letters bold.
class TMarkedLine final {
 public:
  TMarkedLine(const QString &text, const QFont &font, Qt::LayoutDirection direction, const QStringList &query)
      : m_text(text.left(LongestText)), m_font(font), m_direction(direction) {
    for (const VisitWords::TPlace &place : VisitWords::Places(m_text, query)) {
      QTextCharFormat bold;
      bold.setFontWeight(QFont::Bold);
      m_marks.append({int(place.start), int(place.length), bold});
    }
    LayOut(m_text);
  }

  [[nodiscard]] int Width() const { return int(std::ceil(m_layout.lineAt(0).naturalTextWidth())); }

  void Elide(int room) {
    if (Width() <= room) return;
    // By its length in the order of reading: in lines of both directions what ends last need not stand outermost.
    qsizetype fits = 0;
    for (qsizetype tooLong = m_text.size(); tooLong - fits > 1;) {
      const qsizetype length = (fits + tooLong) / 2;
      LayOut(m_text.first(length) + Ellipsis);
      (Width() <= room ? fits : tooLong) = length;
    }
    if (fits > 0 && m_text.at(fits - 1).isHighSurrogate()) --fits;
    LayOut(m_text.first(fits).trimmed() + Ellipsis);
  }

  void Draw(QPainter &painter, const QRect &place, Qt::LayoutDirection direction, const QColor &ink) const {
    const QTextLine line = m_layout.lineAt(0);
    const QRectF text = line.naturalTextRect();
    const qreal left = direction == Qt::RightToLeft ? place.right() + 1 - text.width() : place.left();
    painter.setPen(ink);
    m_layout.draw(&painter, QPointF(left - text.left(), place.top() + (place.height() - line.height()) / 2));
  }

 private:
  void LayOut(const QString &text) {
    m_layout.clearLayout();
    m_layout.setText(text);
    m_layout.setFont(m_font);
    QTextOption option;
    option.setWrapMode(QTextOption::NoWrap);
    option.setTextDirection(m_direction);
    m_layout.setTextOption(option);
    QList<QTextLayout::FormatRange> marks = m_marks;
    for (auto &mark : marks) mark.length = std::min(mark.length, int(text.size()) - mark.start);
    marks.removeIf([](const auto &mark) { return mark.length <= 0; });
    m_layout.setFormats(marks);
    m_layout.beginLayout();
    QTextLine line = m_layout.createLine();
    line.setLineWidth(QWIDGETSIZE_MAX);
    m_layout.endLayout();
  }

  QString m_text;
  QFont m_font;
  Qt::LayoutDirection m_direction;
  QList<QTextLayout::FormatRange> m_marks;
  QTextLayout m_layout;
};

}  // namespace

QSize TSuggestionDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &) const {
  return {0, std::max(TRowDelegate::LeastHeight, option.fontMetrics.height() + 2 * TextPadding)};
}

void TSuggestionDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const {
  QStyleOptionViewItem row(option);
  initStyleOption(&row, index);
  const QStyle &style = *(row.widget != nullptr ? row.widget->style() : QApplication::style());
  style.drawPrimitive(QStyle::PE_PanelItemViewItem, &row, painter, row.widget);

  const bool isChosen = row.state.testFlag(QStyle::State_Selected);
  const auto group = row.state.testFlag(QStyle::State_Active) ? QPalette::Active : QPalette::Inactive;
  const QColor ground = row.palette.color(group, isChosen ? QPalette::Highlight : QPalette::Base);
  const QColor ink = row.palette.color(group, isChosen ? QPalette::HighlightedText : QPalette::Text);
  const QColor mixed = Mixed(ink, ground, SoftShare);
  const QColor soft = Contrast::Between(mixed, ground) >= Contrast::ForText ? mixed : ink;

  // Laid out from left to right, and each piece mirrored as a whole.
  const auto mirrored = [&row](const QRect &place) { return QStyle::visualRect(row.direction, row.rect, place); };
  QRect room = row.rect.adjusted(Margin, 0, -Margin, 0);
  const QSize iconSize = row.decorationSize;
  const QRect iconPlace(room.left(), room.center().y() - iconSize.height() / 2, iconSize.width(), iconSize.height());
  row.icon.paint(painter, mirrored(iconPlace), Qt::AlignCenter);
  room.setLeft(iconPlace.right() + 1 + Margin);

  painter->save();
  painter->setClipRect(row.rect);
  // An address reads from left to right everywhere.
  TMarkedLine address(row.text, row.font, Qt::LeftToRight, m_query);
  const QString titleText = index.data(TitleRole).toString();
  if (!titleText.isEmpty()) {
    const auto direction = titleText.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight;
    TMarkedLine title(titleText, row.font, direction, m_query);
    title.Elide(std::max(room.width() * TitleTwelfths / 12, room.width() - Gap - address.Width()));
    title.Draw(*painter, mirrored(QRect(room.left(), room.top(), title.Width(), room.height())), row.direction, ink);
    room.setLeft(room.left() + title.Width() + Gap);
  }
  address.Elide(room.width());
  address.Draw(*painter, mirrored(room), row.direction, titleText.isEmpty() ? ink : soft);
  painter->restore();
}
