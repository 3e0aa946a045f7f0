#include "browser/downloads/page_downloads.h"

#include <memory>
#include <QUrl>
#include <QWebEngineDownloadRequest>
#include <QWebEnginePage>
#include <utility>

#include "browser/downloads/download_owners.h"

TPageDownloads::TPageDownloads(QWebEnginePage *page, std::function<int()> recentAct, std::function<bool()> isInFront)
    : QObject(page),
      m_recentAct(std::move(recentAct)),
      m_isInFront(std::move(isInFront)),
      m_owners(&TDownloadOwners::Of(*page->profile())) {
  m_owners->Add(this);
}

TPageDownloads::~TPageDownloads() {
  BeginPage();
  if (m_owners) m_owners->Remove(this);
}

TPageDownloads *TPageDownloads::Of(const QWebEnginePage *page) {
  return page != nullptr ? page->findChild<TPageDownloads *>(QString(), Qt::FindDirectChildrenOnly) : nullptr;
}

QWebEnginePage &TPageDownloads::Page() const {
  return *static_cast<QWebEnginePage *>(parent());
}

void TPageDownloads::NoteAsked(const QUrl &address) {
  if (m_owners) m_owners->NoteAsked(this, address);
}

void TPageDownloads::Follow(QWebEngineDownloadRequest *request) {
  if (request->isFinished()) return;
  Q_EMIT Came(request->url(), request->mimeType());
  ++m_underWay;
  // It ends once, finished or not, or goes with what it was for.
  const auto end = [this, runs = std::make_shared<bool>(true)] {
    if (std::exchange(*runs, false)) --m_underWay;
  };
  connect(request, &QWebEngineDownloadRequest::isFinishedChanged, this, end);
  connect(request, &QObject::destroyed, this, end);
}

TPageDownloads::TVerdict TPageDownloads::Judge() {
  if (std::exchange(m_expected, false)) return TVerdict::ByUser;
  if (const int act = m_recentAct(); act != 0 && std::exchange(m_lastAct, act) != act) return TVerdict::ByUser;
  switch (m_state) {
    case TState::Allowed:
      return TVerdict::Allowed;
    case TState::Refused:
      return TVerdict::Refused;
    case TState::Asking:
      return TVerdict::Wait;
    case TState::Fresh:
      if (m_isInFront()) {
        m_state = TState::HadOne;
        return TVerdict::First;
      }
      break;
    case TState::HadOne:
      break;
  }
  m_state = TState::Asking;
  // Whoever holds the file is ready for the answer by then.
  QMetaObject::invokeMethod(
      this,
      [this] {
        if (m_state == TState::Asking) Q_EMIT Asked();
      },
      Qt::QueuedConnection);
  return TVerdict::Wait;
}

void TPageDownloads::Answer(bool allow) {
  if (m_state != TState::Asking) return;
  m_state = allow ? TState::Allowed : TState::Refused;
  Q_EMIT Answered(allow);
}

void TPageDownloads::BeginPage() {
  Answer(false);
  m_expected = false;
  m_state = TState::Fresh;
}
