#include "browser/strip/tab_drag.h"

#include <QGuiApplication>
#include <QStyleHints>
#include <QTimerEvent>
#include "browser/strip/tab_geometry.h"

namespace {
constexpr int kScrollInterval = 150;  // ms between steps while a tab is held beyond the end of the strip
}

TTabDrag::TTabDrag(const TTabList &tabs, const TTabGeometry &geometry, QObject *parent)
    : QObject(parent), m_tabs(tabs), m_geometry(geometry) {}

void TTabDrag::Press(QWidget *page, const QPoint &position) {
  Release();
  m_page = page;
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
