#pragma once

#include <QElapsedTimer>
#include <QHash>
#include <QList>
#include <QObject>
#include <QPointer>

class QUrl;
class QWebEngineDownloadRequest;
class QWebEngineProfile;
class TPageDownloads;

// Which page of a profile a download is of. The engine up to 6.4 ends the program when it is asked that of a page that
// went before its server had answered, so pages are known by what they have asked for.
class TDownloadOwners final : public QObject {
  Q_OBJECT

 public:
  [[nodiscard]] static TDownloadOwners &Of(QWebEngineProfile &profile);

  void Add(TPageDownloads *page);
  void Remove(TPageDownloads *page);
  // The page is about to ask for something that may turn out to be a file.
  void NoteAsked(TPageDownloads *page, const QUrl &address);
  // nullptr where the page has gone, or nothing is known of it.
  [[nodiscard]] TPageDownloads *OwnerOf(const QWebEngineDownloadRequest &request);

 private:
  struct TAsked {
    size_t address;
    TPageDownloads *page;
  };

  explicit TDownloadOwners(QWebEngineProfile &profile);
  [[nodiscard]] TPageDownloads *Find(const QWebEngineDownloadRequest &request);

  QList<TPageDownloads *> m_pages;
  QList<TAsked> m_asked;                              // the newest last
  QHash<quint32, QPointer<TPageDownloads>> m_owners;  // by request; null once the page has gone
  QElapsedTimer m_sinceGone;                          // the last page that went
};
