#include "browser/downloads/download_owners.h"

#include <algorithm>
#include <QUrl>
#include <QWebEngineDownloadRequest>
#include <QWebEnginePage>
#include <QWebEngineProfile>

#include "browser/downloads/page_downloads.h"

namespace {

constexpr qsizetype MostAsked = 4000;  // of all pages; most become pages, and are of no use any more
// What a page has made itself waits for no server, and comes within moments or goes with its page.
constexpr qint64 InsideComes = 60'000;  // milliseconds, many times what it takes

size_t MarkOf(const QUrl &address) {
  return qHash(address.adjusted(QUrl::RemoveFragment));
}

QString OriginOf(const QUrl &address) {
  return address.scheme() + u':' + address.authority(QUrl::FullyEncoded);
}

}  // namespace

TDownloadOwners &TDownloadOwners::Of(QWebEngineProfile &profile) {
  auto *owners = profile.findChild<TDownloadOwners *>(QString(), Qt::FindDirectChildrenOnly);
  if (owners == nullptr) owners = new TDownloadOwners(profile);
  return *owners;
}

TDownloadOwners::TDownloadOwners(QWebEngineProfile &profile) : QObject(&profile) {
  connect(&profile, &QWebEngineProfile::downloadRequested, this, [this](QWebEngineDownloadRequest *request) {
    if (TPageDownloads *page = OwnerOf(*request)) page->Follow(request);
  });
}

void TDownloadOwners::Add(TPageDownloads *page) {
  m_pages.append(page);
}

void TDownloadOwners::Remove(TPageDownloads *page) {
  m_pages.removeOne(page);
  m_asked.removeIf([page](const TAsked &asked) { return asked.page == page; });
  m_sinceGone.start();
}

void TDownloadOwners::NoteAsked(TPageDownloads *page, const QUrl &address) {
  m_asked.append({MarkOf(address), page});
  if (m_asked.size() > MostAsked) m_asked.remove(0, MostAsked / 2);
}

TPageDownloads *TDownloadOwners::OwnerOf(const QWebEngineDownloadRequest &request) {
  // After an interruption the engine comes with the same one again, with or without its page.
  auto owner = m_owners.constFind(request.id());
  if (owner == m_owners.constEnd()) owner = m_owners.insert(request.id(), Find(request));
  return *owner;
}

TPageDownloads *TDownloadOwners::Find(const QWebEngineDownloadRequest &request) {
  const QUrl address = request.url();
  const bool isBlob = address.scheme() == QLatin1String("blob");
  if (!isBlob && address.scheme() != QLatin1String("data")) {
    const auto asked = std::find_if(m_asked.crbegin(), m_asked.crend(),
                                    [mark = MarkOf(address)](const TAsked &one) { return one.address == mark; });
    return asked != m_asked.crend() ? asked->page : nullptr;
  }
  if (!m_sinceGone.isValid() || m_sinceGone.hasExpired(InsideComes)) return TPageDownloads::Of(request.page());
  const auto made =
      std::ranges::find_if(m_pages, [origin = OriginOf(QUrl(address.path()))](const TPageDownloads *page) {
        return OriginOf(page->Page().url()) == origin;
      });
  return isBlob && made != m_pages.end() ? *made : nullptr;
}
