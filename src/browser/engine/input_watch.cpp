#include "browser/engine/input_watch.h"

#include <QChildEvent>
#include <QWheelEvent>
#include <QWidget>
#include <utility>

namespace {

// From the click through the page's own handlers to the navigation.
constexpr qint64 ActingTime = 1000;  // milliseconds

}  // namespace

TInputWatch::TInputWatch(QWidget *view, QObject *parent) : QObject(parent), m_view(view) {
  view->installEventFilter(this);
  for (QWidget *inner : view->findChildren<QWidget *>()) inner->installEventFilter(this);
}

bool TInputWatch::UserJustActed() const {
  return m_since.isValid() && m_since.elapsed() < ActingTime;
}

bool TInputWatch::eventFilter(QObject *watched, QEvent *event) {
  switch (event->type()) {
    case QEvent::ChildAdded:
      if (watched == m_view) static_cast<QChildEvent *>(event)->child()->installEventFilter(this);
      break;
    case QEvent::Hide: {
      // Going to another site swaps the inner widget. The toolkit would move the keyboard from the one that goes to
      // whatever comes next, as the Tab key does: to a button of the window, or to the first link of the new page.
      auto *inner = static_cast<QWidget *>(watched);
      if (inner == m_view || !m_view->isVisible() || inner->window()->focusWidget() != inner) break;
      m_swapping = true;
      inner->clearFocus();
      break;
    }
    case QEvent::Show: {
      auto *inner = static_cast<QWidget *>(watched);
      if (inner == m_view || !std::exchange(m_swapping, false)) break;
      if (inner->window()->focusWidget() == nullptr) inner->setFocus(Qt::OtherFocusReason);
      break;
    }
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::KeyPress:
    case QEvent::TouchEnd:
      m_since.start();
      ++m_acts;
      m_hasActed = true;
      Q_EMIT Acted();
      break;
    case QEvent::Wheel: {
      const auto *wheel = static_cast<QWheelEvent *>(event);
      if (!wheel->modifiers().testFlag(Qt::ControlModifier)) break;
      Zoom(wheel->angleDelta().y());
      return true;
    }
    default:
      break;
  }
  return false;
}

void TInputWatch::Zoom(int angle) {
  m_wheelAngle += angle;
  // Touch pads send many small angles; a step is one notch of a wheel.
  for (; m_wheelAngle >= QWheelEvent::DefaultDeltasPerStep; m_wheelAngle -= QWheelEvent::DefaultDeltasPerStep) {
    Q_EMIT ZoomWanted(true);
  }
  for (; m_wheelAngle <= -QWheelEvent::DefaultDeltasPerStep; m_wheelAngle += QWheelEvent::DefaultDeltasPerStep) {
    Q_EMIT ZoomWanted(false);
  }
}
