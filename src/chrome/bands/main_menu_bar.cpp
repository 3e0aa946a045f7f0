#include "chrome/bands/main_menu_bar.h"

#include <algorithm>
#include <QEvent>
#include <QMenuBar>
#include <QStyleOption>
#include <QToolButton>
#include <utility>

#include "actions/actions.h"
#include "chrome/bands/menu_extender.h"
#include "config/language.h"

namespace {

// Wider than its items can ever need, so that the toolkit has no reason to hide any behind a button of its own.
constexpr int FullWidth = 16384;  // pixels
constexpr int ChevronMargin = 2;
constexpr int EndLine = 1;

// Shows that there is more, and not that there is a menu as well.
class TChevron final : public QToolButton {
 public:
  using QToolButton::QToolButton;

 protected:
  void initStyleOption(QStyleOptionToolButton *option) const override {
    QToolButton::initStyleOption(option);
    option->features &= ~QStyleOptionToolButton::HasMenu;
  }
};

}  // namespace

TMainMenuBar::TMainMenuBar(TActions &actions, const TLanguage &language, QWidget *parent)
    : QWidget(parent),
      m_view(new QWidget(this)),
      m_bar(new QMenuBar(m_view)),
      m_panel(new QWidget(this)),
      m_chevron(new TChevron(m_panel)),
      m_extender(new TMenuExtender(
          actions, [this](const QAction *action) { return SpanOf(action).end <= m_view->width(); }, this)) {
  setObjectName(QStringLiteral("pnlMenuBar"));
  setAccessibleName(language.Text("MAIN", "MenuBarName"));
  actions.FillMenuBar(m_bar);
  m_panel->setObjectName(QStringLiteral("pnlMenuExtender"));
  m_chevron->setObjectName(QStringLiteral("tbxMenu"));
  m_chevron->setIcon(style()->standardIcon(QStyle::SP_ToolBarHorizontalExtensionButton, nullptr, m_chevron));
  m_chevron->setFixedWidth(style()->pixelMetric(QStyle::PM_ToolBarExtensionExtent, nullptr, m_chevron) +
                           2 * ChevronMargin);
  m_chevron->setAutoRaise(true);
  m_chevron->setFocusPolicy(Qt::TabFocus);
  m_chevron->setPopupMode(QToolButton::InstantPopup);
  m_chevron->setMenu(m_extender);
  m_chevron->setToolTip(language.Text("MAIN", "MenuBarMore"));
  m_chevron->setAccessibleName(m_chevron->toolTip());
  m_view->installEventFilter(this);
  m_bar->installEventFilter(this);
  connect(m_bar, &QMenuBar::hovered, this, &TMainMenuBar::BringIntoView);
}

bool TMainMenuBar::IsElsewhere() const {
  return m_bar->isNativeMenuBar();
}

QSize TMainMenuBar::sizeHint() const {
  return m_bar->sizeHint();
}

QSize TMainMenuBar::minimumSizeHint() const {
  return {0, m_bar->minimumSizeHint().height()};
}

TMainMenuBar::TSpan TMainMenuBar::SpanOf(const QAction *action) const {
  const QRect place = m_bar->actionGeometry(const_cast<QAction *>(action));
  const QRect logical = QStyle::visualRect(layoutDirection(), m_bar->rect(), place);
  return {logical.left(), logical.left() + logical.width()};
}

void TMainMenuBar::LayOut() {
  const int barHeight = m_bar->sizeHint().height();
  m_bar->resize(FullWidth, barHeight);
  int end = 0;
  for (const QAction *action : m_bar->actions()) {
    if (action->isVisible()) end = std::max(end, SpanOf(action).end);
  }
  const bool fits = end <= width();
  const int panel = fits ? 0 : std::min(m_chevron->width(), width());
  int view = width() - panel;
  if (fits) {
    m_scrolled = -1;
  } else if (m_scrolled < 0) {
    // No item is cut in two.
    int whole = 0;
    for (const QAction *action : m_bar->actions()) {
      const int itemEnd = action->isVisible() ? SpanOf(action).end : 0;
      if (itemEnd <= view) whole = std::max(whole, itemEnd);
    }
    view = whole;
  }
  const auto mirrored = [this](const QWidget *in, const QRect &place) {
    return QStyle::visualRect(layoutDirection(), in->rect(), place);
  };
  // In the middle of a row that is higher, and without the line with which a menu bar ends at a page.
  m_view->setGeometry(mirrored(this, {0, (height() - barHeight) / 2, view, barHeight - EndLine}));
  m_panel->setGeometry(mirrored(this, {width() - panel, 0, panel, height()}));
  m_panel->setVisible(!fits);
  m_chevron->setFixedHeight(height());
  m_bar->setGeometry(mirrored(m_view, {-std::max(m_scrolled, 0), 0, FullWidth, barHeight}));
}

void TMainMenuBar::BringIntoView(QAction *action) {
  // It tells of the items in the menus as well.
  if (!m_bar->actions().contains(action)) return;
  const TSpan span = SpanOf(action);
  const int first = std::max(m_scrolled, 0);
  if (span.begin >= first && span.end <= first + m_view->width()) return;
  // This is told before the menu opens at the item's place.
  m_scrolled = span.end <= width() - m_panel->width() ? 0 : span.begin;
  LayOut();
  for (const QAction *item : m_bar->actions()) {
    // One may hide because another one opens.
    const auto kind = Qt::ConnectionType(Qt::QueuedConnection | Qt::UniqueConnection);
    if (item->menu() != nullptr) connect(item->menu(), &QMenu::aboutToHide, this, &TMainMenuBar::Settle, kind);
  }
}

void TMainMenuBar::Settle() {
  if (m_scrolled < 0 || m_bar->activeAction() != nullptr) return;
  m_scrolled = -1;
  LayOut();
}

bool TMainMenuBar::event(QEvent *event) {
  if (event->type() == QEvent::LayoutDirectionChange) LayOut();
  return QWidget::event(event);
}

bool TMainMenuBar::eventFilter(QObject *watched, QEvent *event) {
  if (watched == m_view && event->type() == QEvent::LayoutRequest) {
    // The menu bar wants to have another size.
    LayOut();
    updateGeometry();
  } else if (watched == m_bar && event->type() == QEvent::FocusOut) {
    QMetaObject::invokeMethod(this, &TMainMenuBar::Settle, Qt::QueuedConnection);
  }
  return QWidget::eventFilter(watched, event);
}

void TMainMenuBar::resizeEvent(QResizeEvent *event) {
  QWidget::resizeEvent(event);
  LayOut();
}
