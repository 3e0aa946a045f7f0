#include "browser/strip/tab_bar_view.h"

#include <algorithm>
#include <QAccessible>
#include <QCoreApplication>
#include <QPainter>
#include <QPaintEvent>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QStyle>
#include <QToolButton>
#include "browser/strip/tab_bar_accessible.h"

namespace {
constexpr double kGreatestShare = 1.0 / 3;  // of the control's height, so that 500 tabs leave room for the page
constexpr int kScrolledTabs = 2;            // narrowest tabs per click on a scroll button

TTabMetrics MetricsFor(const QWidget *widget) {
  return TTabMetrics(widget->fontMetrics(), widget->style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, widget));
}

// As drawn: one line, and without the signs that mark keyboard accelerators.
QString PlainText(const QString &caption) {
  QString text;
  text.reserve(caption.size());
  for (qsizetype i = 0; i < caption.size(); ++i) {
    if (caption[i] == u'&' && ++i == caption.size()) break;
    text += caption[i];
  }
  return text.simplified();
}
}  // namespace

TTabBarView::TTabBarView(const TTabList &tabs, QWidget *parent)
    : QWidget(parent),
      m_tabs(tabs),
      m_metrics(MetricsFor(this)),
      m_scrollLeft(new QToolButton(this)),
      m_scrollRight(new QToolButton(this)),
      m_scrollBar(new QScrollBar(Qt::Vertical, this)) {
  TTabBarAccessible::Install();
  setFocusPolicy(Qt::TabFocus);  // a click leaves the keyboard with the page
  setMouseTracking(true);
  setAcceptDrops(true);
  for (QToolButton *button : {m_scrollLeft, m_scrollRight}) {
    button->setAutoRepeat(true);
    button->setFocusPolicy(Qt::NoFocus);
    button->hide();
  }
  m_scrollLeft->setArrowType(Qt::LeftArrow);
  m_scrollRight->setArrowType(Qt::RightArrow);
  m_scrollLeft->setObjectName(QStringLiteral("tbScrollLeft"));
  m_scrollRight->setObjectName(QStringLiteral("tbScrollRight"));
  m_scrollBar->setObjectName(QStringLiteral("sbRows"));
  m_scrollBar->setFocusPolicy(Qt::NoFocus);
  m_scrollBar->hide();
  connect(m_scrollLeft, &QToolButton::clicked, this, [this] { ScrollByHand(-1); });
  connect(m_scrollRight, &QToolButton::clicked, this, [this] { ScrollByHand(1); });
  connect(m_scrollBar, &QScrollBar::valueChanged, this, [this](int row) {
    m_scrolledByHand = true;
    ScrollTo(row);
  });
}

TTabBarView::~TTabBarView() = default;

void TTabBarView::TabInserted(TTab *tab) {
  m_layout.Insert(m_tabs.Position(tab), 0);
  TabShown(tab);
}

void TTabBarView::TabAboutToGo(TTab *tab) {
  if (tab->visible) Announce(QAccessible::ObjectDestroyed, tab);
  if (m_dragging && m_pressed == tab->page) StopDragging();
}

void TTabBarView::TabRemoved(int position) {
  m_layout.Remove(position);
  Invalidate();
}

void TTabBarView::TabMoved(int from, int to) {
  m_layout.Move(from, to);
  if (m_tabs.Active() == m_tabs.At(to)) m_scrolledByHand = false;
  Invalidate();
}

void TTabBarView::TabShown(TTab *tab) {
  Measure(tab);
  Invalidate();
  if (tab->visible) Announce(QAccessible::ObjectCreated, tab);
}

void TTabBarView::TabHidden(TTab *tab) {
  Measure(tab);
  Invalidate();
}

void TTabBarView::TabCaptionChanged(TTab *tab, const QString &caption) {
  tab->caption = caption;
  const QString text = PlainText(caption);
  if (text == tab->text) return;
  tab->text = text;
  tab->elidedWidth = -1;
  if (!tab->visible) return;
  Measure(tab);
  UpdateTab(tab);
  Announce(QAccessible::NameChanged, tab);
}

void TTabBarView::TabImageChanged(TTab *tab) {
  if (!tab->visible) return;
  Measure(tab);
  UpdateTab(tab);
}

void TTabBarView::ActiveChanged(TTab *before) {
  TTab *active = m_tabs.Active();
  m_scrolledByHand = false;
  if (before) UpdateTab(before);
  if (active) {
    UpdateTab(active);
    if (!m_stale) Reveal(active);
  }
  if (!active) return;
  Announce(QAccessible::Selection, active);
  if (hasFocus()) Announce(QAccessible::Focus, active);
}

void TTabBarView::SetImages(const QList<QIcon> &images) {
  m_images = images;
  MeasureAll();
}

void TTabBarView::SetInactiveColors(const QColor &tab, const QColor &font) {
  m_inactiveTab = tab;
  m_inactiveFont = font;
  update();
}

void TTabBarView::SetMultipleLines(bool multiple) {
  if (m_multiple == multiple) return;
  m_multiple = multiple;
  m_scrolledByHand = false;
  m_offset = 0;
  Invalidate();
}

void TTabBarView::SetTabsDown(bool down) {
  if (m_tabsDown == down) return;
  m_tabsDown = down;
  update();
  Invalidate();
}

void TTabBarView::SetButtonTexts(const QString &closeTab, const QString &scrollLeft, const QString &scrollRight) {
  m_closeText = closeTab;
  m_scrollLeft->setToolTip(scrollLeft);
  m_scrollLeft->setAccessibleName(scrollLeft);
  m_scrollRight->setToolTip(scrollRight);
  m_scrollRight->setAccessibleName(scrollRight);
}

int TTabBarView::HeightFor(const QSize &control) {
  const int maxRows = std::max(1, static_cast<int>(control.height() * kGreatestShare) / m_metrics.rowHeight);
  if (control.width() != m_extent || maxRows != m_maxRows) {
    m_extent = control.width();
    m_maxRows = maxRows;
    m_scrolledByHand = false;
    m_stale = true;
  }
  LayOut();
  return RowsShown() * m_metrics.rowHeight + m_metrics.edge;
}

QRect TTabBarView::TabRect(const TTab *tab) {
  if (!tab->visible) return {};
  LayOut();
  return Mirrored(PlaceOf(m_tabs.Position(tab)) & Area());
}

TTab *TTabBarView::TabAt(const QPoint &position) {
  LayOut();
  const QPoint point = Mirrored(position);
  const QRect area = Area();
  if (!area.contains(point)) return nullptr;
  const int row = (point.y() - area.y()) / m_metrics.rowHeight;
  return m_tabs.At(m_multiple ? m_layout.IndexAt(row + m_offset, point.x())
                              : m_layout.IndexAt(0, point.x() + m_offset));
}

void TTabBarView::Announce(QAccessible::Event type, const TTab *tab) {
  if (!QAccessible::isActive()) return;
  QAccessibleEvent event(this, type);
  event.setChild(m_tabs.Ordinal(tab));
  QAccessible::updateAccessibility(&event);
}

bool TTabBarView::event(QEvent *event) {
  switch (event->type()) {
    case QEvent::LayoutRequest:
      m_arrangePosted = false;
      Q_EMIT ArrangeWanted();
      return true;
    case QEvent::ToolTip: {
      const auto *help = static_cast<QHelpEvent *>(event);
      ShowTip(help->pos(), help->globalPos());
      return true;
    }
    default:
      return QWidget::event(event);
  }
}

void TTabBarView::changeEvent(QEvent *event) {
  switch (event->type()) {
    case QEvent::FontChange:
    case QEvent::StyleChange:
      RefreshMetrics();
      break;
    case QEvent::LayoutDirectionChange:
      update();
      Invalidate();
      break;
    default:
      break;
  }
  QWidget::changeEvent(event);
}

void TTabBarView::paintEvent(QPaintEvent *event) {
  LayOut();
  QPainter painter(this);
  TTabPainter tabPainter(painter, m_metrics, palette(), layoutDirection(), m_tabsDown);
  tabPainter.inactiveTab = m_inactiveTab;
  tabPainter.inactiveFont = m_inactiveFont;
  tabPainter.DrawBackground(rect());

  const QRect area = Area();
  const QRect clip = Mirrored(event->rect()) & area;
  if (clip.isEmpty()) return;
  painter.setClipRect(Mirrored(area));
  const int shiftX = m_multiple ? 0 : m_offset;
  const int shiftRow = m_multiple ? m_offset : 0;
  const int firstRow = shiftRow + (clip.top() - area.y()) / m_metrics.rowHeight;
  const int lastRow = shiftRow + (clip.bottom() - area.y()) / m_metrics.rowHeight;
  for (int row = firstRow; row <= lastRow; ++row) {
    for (int i = m_layout.FirstEndingAfter(row, clip.left() + shiftX); i < m_layout.Count(); ++i) {
      const TTabLayout::TPlace &place = m_layout.Place(i);
      if (place.row != row || place.x > clip.right() + shiftX) break;
      if (place.width > 0) DrawTabAt(tabPainter, i);
    }
  }
}

void TTabBarView::Invalidate() {
  m_stale = true;
  if (m_arrangePosted) return;
  m_arrangePosted = true;
  QCoreApplication::postEvent(this, new QEvent(QEvent::LayoutRequest));
}

void TTabBarView::LayOut() {
  if (!m_stale) return;
  m_stale = false;
  TTabLayout::TSpace space;
  space.extent = m_extent;
  space.narrowest = m_metrics.narrowest;
  space.maxRows = m_maxRows;
  space.multiple = m_multiple;
  space.lineReserve = 2 * m_metrics.rowHeight;
  space.rowsReserve = m_scrollBar->sizeHint().width();
  m_layout.SetSpace(space);
  const int first = m_layout.FirstStale();
  const bool overflowed = m_layout.Overflows();
  m_layout.Update();
  // A tab that comes or goes far beyond what is in sight, in a strip that scrolls anyway, changes nothing to be seen.
  const bool scrolls = overflowed && m_layout.Overflows();
  const bool seen = first <= m_layout.Count() && (!scrolls || first == 0 || IsInSight(first - 1));
  PlaceScrollers();
  const TTab *active = m_tabs.Active();
  if (active && !m_scrolledByHand) Reveal(active);
  if (seen) update();
  UpdateHover();
}

// Whether this tab, or the one after it, may lie in front of the end of what is shown.
bool TTabBarView::IsInSight(int position) const {
  const TTabLayout::TPlace &place = m_layout.Place(position);
  return m_multiple ? place.row < m_offset + RowsShown() : place.x + place.width < m_offset + m_layout.Extent();
}

void TTabBarView::PlaceScrollers() {
  const QRect area = Area();
  const int left = area.x() + area.width();
  const bool line = m_layout.Overflows() && !m_multiple;
  const bool rows = m_layout.Overflows() && m_multiple;
  if (line) {
    const int size = m_metrics.rowHeight;
    // The left one stays on the left in every reading direction: it scrolls to where it points.
    const bool mirrored = layoutDirection() == Qt::RightToLeft;
    m_scrollLeft->setGeometry(Mirrored(QRect(mirrored ? left + size : left, area.y(), size, size)));
    m_scrollRight->setGeometry(Mirrored(QRect(mirrored ? left : left + size, area.y(), size, size)));
  }
  m_scrollLeft->setVisible(line);
  m_scrollRight->setVisible(line);
  if (rows) {
    m_scrollBar->setGeometry(Mirrored(QRect(left, area.y(), m_scrollBar->sizeHint().width(), area.height())));
    const QSignalBlocker quiet(m_scrollBar);
    m_scrollBar->setRange(0, GreatestOffset());
    m_scrollBar->setPageStep(RowsShown());
  }
  m_scrollBar->setVisible(rows);
  ScrollTo(m_offset);
}

void TTabBarView::Measure(TTab *tab) {
  ++m_measured;
  const int wish = tab->visible ? m_metrics.WidthOf(fontMetrics(), tab->text, KeepsImagePlace(tab)) : 0;
  if (m_layout.SetWish(m_tabs.Position(tab), wish)) Invalidate();
}

void TTabBarView::MeasureAll() {
  for (int i = 0; i < m_tabs.Count(); ++i) {
    m_tabs.At(i)->elidedWidth = -1;
    Measure(m_tabs.At(i));
  }
  update();
  Invalidate();
}

void TTabBarView::RefreshMetrics() {
  m_metrics = MetricsFor(this);
  MeasureAll();
}

bool TTabBarView::KeepsImagePlace(const TTab *tab) const {
  return !m_images.isEmpty() || !tab->icon.isNull();
}

QIcon TTabBarView::ImageOf(const TTab *tab) const {
  return tab->image >= 0 && tab->image < m_images.size() ? m_images[tab->image] : tab->icon;
}

int TTabBarView::RowsShown() const {
  return m_multiple ? std::clamp(m_layout.RowCount(), 1, m_maxRows) : 1;
}

QRect TTabBarView::Area() const {
  return QRect(0, m_tabsDown ? m_metrics.edge : 0, m_layout.Extent(), RowsShown() * m_metrics.rowHeight);
}

QRect TTabBarView::Bounds() const {
  return QRect(0, 0, m_extent, Area().height() + m_metrics.edge);
}

QRect TTabBarView::PlaceOf(int position) const {
  const TTabLayout::TPlace &place = m_layout.Place(position);
  const int x = m_multiple ? place.x : place.x - m_offset;
  const int row = m_multiple ? place.row - m_offset : 0;
  return QRect(x, Area().y() + row * m_metrics.rowHeight, place.width, m_metrics.rowHeight);
}

QRect TTabBarView::Mirrored(const QRect &rect) const {
  return rect.isEmpty() ? QRect() : QStyle::visualRect(layoutDirection(), Bounds(), rect);
}

QPoint TTabBarView::Mirrored(const QPoint &point) const {
  return QStyle::visualPos(layoutDirection(), Bounds(), point);
}

QRect TTabBarView::CloseRect(const TTab *tab) const {
  const QRect place = Mirrored(PlaceOf(m_tabs.Position(tab)));
  return TTabParts(m_metrics, place, KeepsImagePlace(tab), layoutDirection()).close;
}

void TTabBarView::DrawTabAt(TTabPainter &painter, int position) {
  ++m_painted;
  TTab *tab = m_tabs.At(position);
  TTabLook look;
  look.rect = Mirrored(PlaceOf(position));
  look.hasImage = KeepsImagePlace(tab);
  look.image = ImageOf(tab);
  const int room = TTabParts(m_metrics, look.rect, look.hasImage, layoutDirection()).text.width();
  if (tab->elidedWidth != room) {
    tab->elidedWidth = room;
    tab->elided = fontMetrics().elidedText(tab->text, Qt::ElideRight, room);
  }
  look.text = tab->elided;
  look.active = tab == m_tabs.Active();
  look.hovered = tab->page == m_hover;
  look.closeHovered = look.hovered && m_overClose;
  look.closePressed = look.closeHovered && m_pressedClose == tab->page;
  look.keyboardFocus = look.active && hasFocus();
  look.dropTarget = tab->page == m_dropTarget;
  painter.DrawTab(look);
}

void TTabBarView::UpdateTab(const TTab *tab) {
  if (!tab->visible) return;
  // From the first stale place on, working the places out repaints whatever is in sight.
  const int position = m_tabs.Position(tab);
  if (position < m_layout.FirstStale()) update(Mirrored(PlaceOf(position)));
}

int TTabBarView::GreatestOffset() const {
  if (m_multiple) return std::max(0, m_layout.RowCount() - RowsShown());
  return std::max(0, m_layout.Length() - m_layout.Extent());
}

void TTabBarView::ScrollTo(int offset) {
  const int greatest = GreatestOffset();
  offset = std::clamp(offset, 0, greatest);
  const bool mirrored = layoutDirection() == Qt::RightToLeft;
  m_scrollLeft->setEnabled(mirrored ? offset < greatest : offset > 0);
  m_scrollRight->setEnabled(mirrored ? offset > 0 : offset < greatest);
  if (m_multiple) {
    const QSignalBlocker quiet(m_scrollBar);
    m_scrollBar->setValue(offset);
  }
  if (offset == m_offset) return;
  m_offset = offset;
  update();
  UpdateHover();
}

void TTabBarView::ScrollByHand(int visualDirection) {
  m_scrolledByHand = true;
  const int direction = layoutDirection() == Qt::RightToLeft ? -visualDirection : visualDirection;
  ScrollTo(m_offset + direction * (m_multiple ? 1 : kScrolledTabs * m_metrics.narrowest));
}

void TTabBarView::Reveal(const TTab *tab) {
  const TTabLayout::TPlace &place = m_layout.Place(m_tabs.Position(tab));
  const int start = m_multiple ? place.row : place.x;
  const int size = m_multiple ? 1 : place.width;
  const int room = m_multiple ? RowsShown() : m_layout.Extent();
  ScrollTo(std::min(start, std::max(m_offset, start + size - room)));
}
