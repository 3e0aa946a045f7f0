#include "browser/page/page_overlay.h"

#include <QEvent>
#include <QStyle>

#include "ui/floating_panel.h"

namespace {

constexpr int Margin = 8;  // pixels around and between the panels

}  // namespace

TPageOverlay::TPageOverlay(QWidget *browser, QWidget *page) : QObject(browser), m_browser(browser), m_page(page) {
  browser->installEventFilter(this);
}

void TPageOverlay::Add(TFloatingPanel *panel, TSide side) {
  if (panel->parentWidget() != m_browser) panel->setParent(m_browser);
  panel->lower();
  m_page->lower();
  panel->installEventFilter(this);
  connect(panel, &QObject::destroyed, this,
          [this, panel] { m_panels.removeIf([panel](const TPlaced &placed) { return placed.panel == panel; }); });
  m_panels.append({panel, side});
  Arrange();
}

void TPageOverlay::Arrange() {
  const QRect room = m_browser->rect().adjusted(Margin, Margin, -Margin, -Margin);
  int top = room.top();
  for (const auto &[panel, side] : std::as_const(m_panels)) {
    if (panel->isHidden()) continue;
    const int width = std::max(std::min(panel->sizeHint().width(), room.width()), panel->minimumSizeHint().width());
    const int wanted = panel->hasHeightForWidth() ? panel->heightForWidth(width) : panel->sizeHint().height();
    const int left = side == TSide::Leading ? room.left() : room.right() + 1 - width;
    const QRect place(left, top, width, wanted);
    panel->setGeometry(QStyle::visualRect(m_browser->layoutDirection(), m_browser->rect(), place));
    top += wanted + Margin;
  }
}

bool TPageOverlay::eventFilter(QObject *watched, QEvent *event) {
  switch (event->type()) {
    case QEvent::Resize:
    case QEvent::LayoutDirectionChange:
      if (watched == m_browser) Arrange();
      break;
    case QEvent::ShowToParent:
    case QEvent::HideToParent:
    case QEvent::LayoutRequest:
      if (watched != m_browser) Arrange();
      break;
    default:
      break;
  }
  return QObject::eventFilter(watched, event);
}
