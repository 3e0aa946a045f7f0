#include "ui/frame_updates.h"

#include <utility>

TFrameUpdates::TFrameUpdates(QObject *parent) : QObject(parent) {
  m_timer.setSingleShot(true);
  m_timer.setTimerType(Qt::PreciseTimer);
  connect(&m_timer, &QTimer::timeout, this, &TFrameUpdates::Tell);
}

void TFrameUpdates::Ask() {
  if (m_isPosted || m_timer.isActive()) return;
  const qint64 passed = m_sinceShown.isValid() ? m_sinceShown.elapsed() : m_interval;
  if (passed >= m_interval) {
    Hurry();
  } else {
    m_timer.start(int(m_interval - passed));
  }
}

void TFrameUpdates::Hurry() {
  if (std::exchange(m_isPosted, true)) return;
  m_timer.stop();
  // Not by the timer: the toolkit's own request to paint, which may be waiting already, would come before it.
  QMetaObject::invokeMethod(this, &TFrameUpdates::Tell, Qt::QueuedConnection);
}

void TFrameUpdates::Tell() {
  m_isPosted = false;
  m_sinceShown.start();
  Q_EMIT Show();
}
