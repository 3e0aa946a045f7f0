#include "app/handed_over_text.h"

#include <QApplication>
#include <QWidget>
#include <QWindow>
#include <utility>

#include "browser/tabs/browser_tab.h"
#include "browser/tabs/tab_strip.h"
#include "groups/page_groups.h"
#include "platform/window_activation.h"

THandedOverText::THandedOverText(QWidget *window, TTabStrip &tabs, TPageGroups &groups)
    : m_window(window), m_tabs(tabs), m_groups(groups) {}

void THandedOverText::Begin() {
  m_begun = true;
  for (const QString &text : std::exchange(m_early, {})) Take(text);
}

void THandedOverText::Take(const QString &text) {
  if (!m_begun) {
    m_early.append(text);
    return;
  }
  // That a text is dropped while a dialog waits for its answer is meant.
  const bool isDropped = QApplication::activeModalWidget() != nullptr || text.isEmpty();
  const bool isGroup = !isDropped && TPageGroups::IsHandedOverGroup(text);
  // A page is asked for first: it would wait until the window has come to the front and is painted.
  if (!isDropped && !isGroup) m_tabs.NewTab()->Navigate(text);
  BringToFront();
  // A group may have a question, which nobody would see behind other windows.
  if (isGroup) m_groups.HalvexGroupClick(text);
}

// The window first, out of the task bar if it must, then the dialog that stands before it.
void THandedOverText::BringToFront() {
  Q_EMIT WindowWanted();
  for (QWidget *widget : {m_window, QApplication::activeModalWidget()}) {
    if (widget == nullptr || widget->testAttribute(Qt::WA_DontShowOnScreen)) continue;
    widget->setWindowState(widget->windowState() & ~Qt::WindowMinimized);
    if (QWindow *handle = widget->windowHandle()) ::BringToFront(*handle);
  }
}
