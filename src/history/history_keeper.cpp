#include "history/history_keeper.h"

#include "history/history_store.h"

namespace {

// Where nothing is written pages get old all the same.
constexpr std::chrono::hours NextLook{1};

}  // namespace

THistoryKeeper::THistoryKeeper(THistoryStore &history, std::chrono::milliseconds idle, QObject *parent)
    : QObject(parent), m_history(history), m_idle(idle) {
  m_timer.setSingleShot(true);
  connect(&m_timer, &QTimer::timeout, this, &THistoryKeeper::Look);
  // Also after each of its own steps, until there is nothing left to do.
  connect(&m_history, &THistoryStore::Written, this, [this] { m_timer.start(m_idle); });
  m_timer.start(m_idle);
}

void THistoryKeeper::SetDays(int days) {
  m_days = days;
  m_timer.start(m_idle);
}

void THistoryKeeper::Look() {
  m_timer.start(NextLook);
  if (m_days <= 0) return;
  const QDateTime limit = QDateTime::currentDateTime().addDays(-m_days);
  const auto oldest = m_history.OldestLastVisit();
  if (oldest && *oldest < limit) m_history.RemoveOld(limit, PagesAtOnce);
}
