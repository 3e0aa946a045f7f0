#include "browser/engine/input_watch.h"

#include <QChildEvent>
#include <QCoreApplication>
#include <QFocusEvent>
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
    case QEvent::Hide:
      // Going to another site swaps the inner widget. The toolkit moves the keyboard from the hidden one to the next as
      // the Tab key would, and the page would put it on its first link.
      if (watched != m_view && static_cast<QWidget *>(watched)->hasFocus()) m_swapping = true;
      break;
    case QEvent::FocusIn: {
      const Qt::FocusReason reason = static_cast<QFocusEvent *>(event)->reason();
      const bool asByTab = reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason;
      if (!std::exchange(m_swapping, false) || !asByTab) break;
      QFocusEvent plain(QEvent::FocusIn, Qt::OtherFocusReason);
      QCoreApplication::sendEvent(watched, &plain);
      return true;
    }
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::KeyPress:
    case QEvent::TouchEnd:
      m_since.start();
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
