#include "ui/frame_pacer.h"

#include <algorithm>
#include <QCoreApplication>
#include <QEvent>
#include <QScopedValueRollback>
#include <QWidget>
#include <QWindow>
#include <utility>

TFramePacer::TFramePacer(QWidget *window) : QObject(window), m_window(window) {
  m_pause.setSingleShot(true);
  m_pause.setTimerType(Qt::PreciseTimer);
  connect(&m_pause, &QTimer::timeout, this, [this] {
    if (std::exchange(m_isWanted, false)) Compose();
  });
  m_window->installEventFilter(this);
}

bool TFramePacer::eventFilter(QObject *watched, QEvent *event) {
  switch (event->type()) {
    case QEvent::WinIdChange:
      // All input comes through the native window.
      if (watched == m_window && m_window->windowHandle() != nullptr)
        m_window->windowHandle()->installEventFilter(this);
      return false;
    case QEvent::KeyPress:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseMove:
    case QEvent::Wheel:
      // Once the event has been dealt with.
      if (watched != m_window && m_pause.isActive()) m_pause.start(0);
      return false;
    case QEvent::UpdateRequest:
      if (watched != m_window || m_isComposing) return false;
      // The toolkit does not ask again before it was heard.
      m_isWanted = m_pause.isActive();
      if (!m_isWanted) Compose();
      return true;
    case QEvent::Expose:
    case QEvent::Paint:
      // The display wants to have the window now.
      if (watched == m_window || m_isComposing) return false;
      Compose([&] { QCoreApplication::sendEvent(watched, event); });
      return true;
    default:
      return false;
  }
}

void TFramePacer::GiveWay() {
  // Not without end: hundreds of pages may be asked for one after the other.
  if (m_isWanted && m_sinceComposed.elapsed() > LongestPause) return;
  if (m_pause.remainingTime() < HeadStart) m_pause.start(HeadStart);
}

void TFramePacer::Compose() {
  Compose([this] {
    QEvent request(QEvent::UpdateRequest);
    QCoreApplication::sendEvent(m_window, &request);
  });
}

void TFramePacer::Compose(const std::function<void()> &compose) {
  QElapsedTimer taken;
  {
    const QScopedValueRollback composing(m_isComposing, true);
    m_isWanted = false;
    taken.start();
    compose();
  }
  m_sinceComposed.start();
  m_pause.start(std::min(int(taken.elapsed()), LongestPause));
}
