#include "history/visit_recorder.h"

#include "history/history_store.h"

TVisitRecorder::TVisitRecorder(THistoryStore &history, QObject *parent) : QObject(parent), m_history(history) {}

void TVisitRecorder::Loaded(const QObject *page, const QString &address, const QString &title) {
  if (!m_last.contains(page)) {
    connect(page, &QObject::destroyed, this, [this, page] { m_last.remove(page); });
  }
  if (m_last.value(page).address == address) return;
  m_last.insert(page, {address, title});
  m_history.AddVisit(address, title == address ? QString() : title);
}

void TVisitRecorder::Titled(const QObject *page, const QString &address, const QString &title) {
  const auto last = m_last.find(page);
  if (last == m_last.end() || last->address != address || title.isEmpty() || title == last->title) return;
  last->title = title;
  if (title != address) m_history.SetTitle(address, title);
}
