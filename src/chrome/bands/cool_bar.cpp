#include "chrome/bands/cool_bar.h"

#include <algorithm>
#include <QEvent>
#include <QStyle>
#include <utility>

#include "chrome/bands/band_grip.h"
#include "config/language.h"

namespace {

constexpr int NarrowBand = 100;  // pixels
constexpr int SizeStep = 16;     // pixels, by keyboard
constexpr int MarkWidth = 3;     // pixels

TForEachBand<TTextKey> Names() {
  TForEachBand<TTextKey> names;
  names[TBand::Menu] = {"MAIN", "MenuBarName"};
  names[TBand::Tool] = {"MAIN", "ToolbarName"};
  names[TBand::Address] = {"MAIN", "AddressBarName"};
  names[TBand::Links] = {"GLOBAL", "Links"};
  return names;
}

}  // namespace

TCoolBar::TCoolBar(const TLanguage &language, QWidget *parent)
    : QWidget(parent), m_language(language), m_mark(new QWidget(this)) {
  setObjectName(QStringLiteral("cbCoolbar"));
  setContextMenuPolicy(Qt::CustomContextMenu);
  const QString hint = language.Text("MAIN", "BandGripHint");
  for (const TBandRow &row : BandRows) {
    auto *grip = new TBandGrip(row.band, this);
    grip->setObjectName(QStringLiteral("grip%1").arg(QLatin1String(row.name)));
    grip->setAccessibleName(language.Text("MAIN", "BandGripName").arg(language.Text(Names()[row.band])));
    grip->setToolTip(TLanguage::ShortHint(hint));
    grip->setWhatsThis(TLanguage::LongHint(hint));
    grip->hide();
    m_grips[row.band] = grip;
    m_wanted[row.band] = true;
    m_bands.SetShown(row.band, false);
    Connect(grip);
  }
  m_grips[TBand::Links]->SetCaption(QStringLiteral("~~Links"));
  m_mark->setAutoFillBackground(true);
  m_mark->setBackgroundRole(QPalette::Highlight);
  m_mark->setAttribute(Qt::WA_TransparentForMouseEvents);
  m_mark->hide();
}

void TCoolBar::Connect(TBandGrip *grip) {
  const TBand band = grip->Band();
  connect(grip, &TBandGrip::Dragged, this,
          [this, band](const QPoint &from, const QPoint &to) { Drag(band, from, to); });
  connect(grip, &TBandGrip::DragEnded, this, [this, band](bool drop) { EndDrag(band, drop); });
  connect(grip, &TBandGrip::StepWanted, this, [this, band](TBandStep step) {
    if (m_bands.Step(band, step, width())) Changed();
  });
  connect(grip, &TBandGrip::BreakWanted, this, [this, band] {
    if (m_bands.ToggleBreak(band)) Changed();
  });
  connect(grip, &TBandGrip::ResizeWanted, this, [this, band](bool wider) {
    const int shown = m_grips[band]->width() + m_contents[band]->width();
    if (m_bands.Resize(band, shown + (wider ? SizeStep : -SizeStep), width())) Changed();
  });
}

void TCoolBar::SetContent(TBand band, QWidget *content) {
  content->setParent(this);
  m_contents[band] = content;
  ShowBands({});
}

void TCoolBar::ShowBands(std::initializer_list<std::pair<TBand, bool>> bands) {
  if (m_isDragging) {
    for (const TBandRow &row : BandRows) m_grips[row.band]->CancelDrag();
  }
  for (const auto &[band, shown] : bands) m_wanted[band] = shown;
  for (const TBandRow &row : BandRows) {
    QWidget *content = m_contents[row.band];
    const bool isShown = content != nullptr && m_wanted[row.band];
    m_bands.SetShown(row.band, isShown);
    m_grips[row.band]->setVisible(isShown);
    if (content != nullptr) content->setVisible(isShown);
  }
  Arrange();
}

void TCoolBar::SetArrangement(const TBandArrangement &bands) {
  m_bands = bands;
  OrderGrips();
  ShowBands({});
}

void TCoolBar::ToggleSize(TBand band) {
  if (!m_bands.IsShown(band)) return;
  const bool isWide = m_grips[band]->width() + m_contents[band]->width() >= NarrowBand;
  if (isWide ? m_bands.Resize(band, 0, width()) : m_bands.Maximize(band, width())) Arrange();
}

int TCoolBar::RowHeight(const TBandArrangement::TRow &row) const {
  int height = 0;
  for (const auto &place : row) {
    const QWidget *content = m_contents[place.band];
    const int wish =
        std::min(std::max(content->sizeHint().height(), content->minimumHeight()), content->maximumHeight());
    height = std::max({height, wish, BandRows[static_cast<size_t>(place.band)].minHeight});
  }
  return height;
}

std::vector<int> TCoolBar::Bottoms(const TBandArrangement::TRows &rows) const {
  std::vector<int> bottoms;
  for (const auto &row : rows) bottoms.push_back((bottoms.empty() ? 0 : bottoms.back()) + RowHeight(row));
  return bottoms;
}

int TCoolBar::heightForWidth(int width) const {
  const std::vector<int> bottoms = Bottoms(m_bands.Rows(width));
  return bottoms.empty() ? 0 : bottoms.back();
}

QSize TCoolBar::sizeHint() const {
  return {width(), heightForWidth(width())};
}

QSize TCoolBar::minimumSizeHint() const {
  // Whatever has no room goes to a row below or is cut off: the bar never keeps the window from being narrow.
  return {0, 0};
}

QString TCoolBar::BandText(int band) const {
  return m_grips[BandRows[static_cast<size_t>(band)].band]->Caption();
}

void TCoolBar::SetBandText(int band, const QString &text) {
  m_grips[BandRows[static_cast<size_t>(band)].band]->SetCaption(text);
}

bool TCoolBar::event(QEvent *event) {
  // Contents or a grip want to have another size.
  if (event->type() == QEvent::LayoutRequest || event->type() == QEvent::LayoutDirectionChange) Arrange();
  return QWidget::event(event);
}

void TCoolBar::resizeEvent(QResizeEvent *event) {
  QWidget::resizeEvent(event);
  Arrange();
}

QRect TCoolBar::Mirrored(const QRect &place) const {
  return QStyle::visualRect(layoutDirection(), rect(), place);
}

void TCoolBar::Measure() {
  for (const TBandRow &row : BandRows) m_bands.SetLeast(row.band, m_grips[row.band]->sizeHint().width() + row.minWidth);
}

void TCoolBar::Arrange() {
  Measure();
  const TBandArrangement::TRows rows = m_bands.Rows(width());
  const std::vector<int> bottoms = Bottoms(rows);
  int top = 0;
  for (size_t i = 0; i < rows.size(); ++i) {
    const int height = bottoms[i] - top;
    for (const auto &place : rows[i]) {
      const int gripWidth = std::min(m_grips[place.band]->sizeHint().width(), place.width);
      m_grips[place.band]->setGeometry(Mirrored({place.x, top, gripWidth, height}));
      m_contents[place.band]->setGeometry(Mirrored({place.x + gripWidth, top, place.width - gripWidth, height}));
    }
    top = bottoms[i];
  }
  Describe(rows);
  if (std::exchange(m_height, top) != top) updateGeometry();
}

void TCoolBar::Drag(TBand band, const QPoint &from, const QPoint &to) {
  if (!std::exchange(m_isDragging, true)) m_before = m_bands;
  const auto logical = [this](int x) { return layoutDirection() == Qt::RightToLeft ? width() - 1 - x : x; };
  const TBandArrangement::TRows rows = m_before.Rows(width());
  const std::vector<int> bottoms = Bottoms(rows);
  int top = 0;
  for (size_t i = 0; i < rows.size(); ++i) {
    const auto place = std::ranges::find(rows[i], band, &TBandArrangement::TPlace::band);
    if (place != rows[i].end() && top <= to.y() && to.y() < bottoms[i]) {
      // Always from where it began: the edges come back when the mouse does.
      m_bands = m_before;
      m_bands.MoveEdge(band, place->x + logical(to.x()) - logical(from.x()), width());
      Arrange();
    }
    top = bottoms[i];
  }
  m_drop = FindBandDrop(m_bands.Rows(width()), bottoms, band, logical(to.x()), to.y());
  ShowMark();
}

void TCoolBar::ShowMark() {
  m_mark->setVisible(m_drop.kind != TBandDrop::TKind::None);
  if (!m_mark->isVisible()) return;
  const TBandArrangement::TRows rows = m_bands.Rows(width());
  const std::vector<int> bottoms = Bottoms(rows);
  int top = 0;
  for (size_t i = 0; i < rows.size(); ++i) {
    const auto place = std::ranges::find(rows[i], m_drop.other, &TBandArrangement::TPlace::band);
    if (place != rows[i].end()) {
      QRect mark;
      if (m_drop.kind == TBandDrop::TKind::Beside) {
        const int edge = m_drop.after ? place->x + place->width : place->x;
        mark = {std::clamp(edge - MarkWidth / 2, 0, width() - MarkWidth), top, MarkWidth, bottoms[i] - top};
      } else {
        const int edge = m_drop.after ? bottoms[i] : top;
        mark = {0, std::clamp(edge - MarkWidth / 2, 0, height() - MarkWidth), width(), MarkWidth};
      }
      m_mark->setGeometry(Mirrored(mark));
      m_mark->raise();
    }
    top = bottoms[i];
  }
}

void TCoolBar::EndDrag(TBand band, bool drop) {
  if (!std::exchange(m_isDragging, false)) return;
  m_mark->hide();
  const TBandDrop wanted = std::exchange(m_drop, {});
  // Where the band goes elsewhere, the edges that gave way to it on its way come back.
  if (!drop || wanted.kind != TBandDrop::TKind::None) m_bands = m_before;
  if (drop) m_bands.Put(band, wanted, width());
  OrderGrips();
  ShowBands({});
}

void TCoolBar::Changed() {
  OrderGrips();
  Arrange();
}

void TCoolBar::OrderGrips() {
  for (int position = 1; position < ::BandCount; ++position) {
    setTabOrder(m_grips[m_bands.At(position - 1)], m_grips[m_bands.At(position)]);
  }
}

void TCoolBar::Describe(const TBandArrangement::TRows &rows) {
  for (size_t row = 0; row < rows.size(); ++row) {
    for (size_t i = 0; i < rows[row].size(); ++i) {
      const auto &place = rows[row][i];
      m_grips[place.band]->setAccessibleDescription(m_language.Text("MAIN", "BandPlace")
                                                        .arg(QString::number(row + 1), QString::number(rows.size()),
                                                             QString::number(i + 1), QString::number(rows[row].size()),
                                                             QString::number(place.width)));
    }
  }
}
