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
#include <utility>
#include <vector>
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

void TTabBarView::TabShown(TTab *tab) {
  Measure(tab);
  Invalidate();
  if (tab->visible) Announce(QAccessible::ObjectCreated, tab);
}

void TTabBarView::TabAboutToGo(TTab *tab) {
  UpdateTab(tab);
  if (tab->visible) Announce(QAccessible::ObjectDestroyed, tab);
  if (m_dragging && m_pressed == tab->page) StopDragging();
}

void TTabBarView::TabRemoved() {
  Invalidate();
}

void TTabBarView::TabHidden(TTab *tab) {
  Measure(tab);
  Invalidate();
}

void TTabBarView::TabMoved(const TTab *tab) {
  if (m_tabs.Active() == tab) m_scrolledByHand = false;
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
  LayOut();
  return ShownPartOf(tab);
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

  painter.setClipRect(Mirrored(Area()));
  for (int i = 0; i < m_tabs.Count(); ++i) {
    if (ShownPartOf(m_tabs.At(i)).intersects(event->rect())) DrawTab(tabPainter, m_tabs.At(i));
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
  std::vector<int> wishes(m_tabs.Count());
  for (int i = 0; i < m_tabs.Count(); ++i) wishes[i] = m_tabs.At(i)->wish;
  m_layout = TTabLayout(wishes, space);
  // Only what comes to lie elsewhere is painted anew. A strip of another size is painted whole anyway, and so is what
  // lies below scroll buttons that come or go.
  QRect changed;
  for (int i = 0; i < m_tabs.Count(); ++i) {
    TTab *tab = m_tabs.At(i);
    if (tab->place == m_layout.Place(i)) continue;
    changed |= ShownPartOf(tab);
    tab->place = m_layout.Place(i);
    changed |= ShownPartOf(tab);
  }
  update(changed);
  PlaceScrollers();
  const TTab *active = m_tabs.Active();
  if (active && !m_scrolledByHand) Reveal(active);
  UpdateHover();
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
  const int wish = tab->visible ? m_metrics.WidthOf(fontMetrics(), tab->text, KeepsImagePlace(tab)) : 0;
  if (std::exchange(tab->wish, wish) != wish) Invalidate();
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

int TTabBarView::Room() const {
  return m_multiple ? RowsShown() : m_layout.Extent();
}

QRect TTabBarView::Area() const {
  return QRect(0, m_tabsDown ? m_metrics.edge : 0, m_layout.Extent(), RowsShown() * m_metrics.rowHeight);
}

QRect TTabBarView::Bounds() const {
  return QRect(0, 0, m_extent, Area().height() + m_metrics.edge);
}

QRect TTabBarView::PlaceOf(const TTab *tab) const {
  const int x = m_multiple ? tab->place.x : tab->place.x - m_offset;
  const int row = m_multiple ? tab->place.row - m_offset : 0;
  return QRect(x, Area().y() + row * m_metrics.rowHeight, tab->place.width, m_metrics.rowHeight);
}

QRect TTabBarView::ShownPartOf(const TTab *tab) const {
  // Most tabs of a long strip are out of sight, which plain numbers tell.
  const int start = m_multiple ? tab->place.row : tab->place.x;
  const int end = m_multiple ? start + 1 : start + tab->place.width;
  if (end <= m_offset || start >= m_offset + Room()) return {};
  return Mirrored(PlaceOf(tab) & Area());
}

QRect TTabBarView::Mirrored(const QRect &rect) const {
  return rect.isEmpty() ? QRect() : QStyle::visualRect(layoutDirection(), Bounds(), rect);
}

QPoint TTabBarView::Mirrored(const QPoint &point) const {
  return QStyle::visualPos(layoutDirection(), Bounds(), point);
}

QRect TTabBarView::CloseRect(const TTab *tab) const {
  const QRect place = Mirrored(PlaceOf(tab));
  return TTabParts(m_metrics, place, KeepsImagePlace(tab), layoutDirection()).close;
}

void TTabBarView::DrawTab(TTabPainter &painter, TTab *tab) {
  TTabLook look;
  look.rect = Mirrored(PlaceOf(tab));
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
  update(ShownPartOf(tab));
}

int TTabBarView::GreatestOffset() const {
  return std::max(0, (m_multiple ? m_layout.RowCount() : m_layout.Length()) - Room());
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
  const int start = m_multiple ? tab->place.row : tab->place.x;
  const int size = m_multiple ? 1 : tab->place.width;
  ScrollTo(std::min(start, std::max(m_offset, start + size - Room())));
}
