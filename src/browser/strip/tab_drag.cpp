#include "browser/strip/tab_drag.h"

#include <QApplication>
#include <QLineEdit>
#include <QStyleHints>
#include <QTimerEvent>
#include "browser/strip/tab_geometry.h"

namespace {
constexpr int kScrollInterval = 150;  // ms between steps while a tab is held beyond the end of the strip

bool IsTakenAt(const QPoint &globalPosition, const QWidget &inside) {
  const QWidget *over = QApplication::widgetAt(globalPosition);
  if (over == &inside || inside.isAncestorOf(over)) return false;
  for (; over != nullptr; over = over->parentWidget()) {
    if (over->acceptDrops()) return qobject_cast<const QLineEdit *>(over) == nullptr;
  }
  return false;
}
}  // namespace

TTabDrag::TTabDrag(const TTabList &tabs, const TTabGeometry &geometry, QObject *parent)
    : QObject(parent), m_tabs(tabs), m_geometry(geometry) {}

void TTabDrag::Press(QWidget *page, const QPoint &position) {
  Release();
  m_page = page;
  const TTab *tab = m_tabs.Find(page);
  m_start = tab != nullptr ? m_tabs.Position(tab) : -1;
  m_from = position;
}

void TTabDrag::Follow(const QPoint &position) {
  if (!m_page) return;
  m_mouse = position;
  const int distance = QGuiApplication::styleHints()->startDragDistance();
  if (!m_moving && (m_mouse - m_from).manhattanLength() < distance) return;
  m_moving = true;
  MoveTab();
  if (!m_geometry.Overflows() || m_geometry.Area().contains(m_mouse)) {
    m_scroll.stop();
  } else if (!m_scroll.isActive()) {
    m_scroll.start(kScrollInterval, this);
  }
}

void TTabDrag::Release() {
  m_page = nullptr;
  Stop();
}

QWidget *TTabDrag::TakeOut(const QPoint &globalPosition, const QWidget &inside) {
  const TTab *tab = m_moving ? m_tabs.Find(m_page) : nullptr;
  if (tab == nullptr || !IsTakenAt(globalPosition, inside)) return nullptr;
  QWidget *page = m_page;
  const int position = m_tabs.Position(tab);
  const int start = m_start;
  Release();
  if (position != start && start >= 0) Q_EMIT MoveWanted(position, start);
  return page;
}

void TTabDrag::Forget(const QWidget *page) {
  if (m_moving && m_page == page) Stop();
}

void TTabDrag::timerEvent(QTimerEvent * /*event*/) {
  Q_EMIT ScrollWanted(m_geometry.Beyond(m_mouse));
  MoveTab();
}

void TTabDrag::Stop() {
  m_moving = false;
  m_scroll.stop();
}

void TTabDrag::MoveTab() {
  const TTab *dragged = m_tabs.Find(m_page);
  if (!dragged || !dragged->visible) {
    Stop();
    return;
  }
  const int gap = m_tabs.VisibleBefore(m_geometry.GapAt(m_mouse));
  const int from = m_tabs.Ordinal(dragged);
  const int to = gap > from ? gap - 1 : gap;
  if (to == from) return;
  Q_EMIT MoveWanted(m_tabs.Position(dragged), m_tabs.Position(m_tabs.VisibleAt(to)));
}
