#pragma once

#include <memory>
#include <optional>
#include <QDateTime>
#include <QList>
#include <QString>

// The pages that were visited: address, title, first and last visit, number of visits.
//
// Kept in one SQLite file that several processes may have open. Nothing is opened before it is needed. Writers only put
// their change into a queue; a thread of the store's own writes what has gathered, in one transaction each time.
// Readers see what has been written (see Flush). A file that is damaged is set aside under a new name beside it and a
// new one is begun. While another process keeps the file locked, or the disk is full, changes wait (ten thousand of
// them at the most). Where nothing can ever be written they are dropped in silence: a history is no reason to disturb
// anybody. One object serves one thread.

struct TVisitedPage {
  QString address{};
  QString title{};
  QDateTime firstVisit{};
  QDateTime lastVisit{};
  qint64 visits = 0;
};

class THistoryStore final {
 public:
  // The file is made, with its folder, at the first visit.
  explicit THistoryStore(const QString &filePath);
  // Writes what is still in the queue, for five seconds at the most; unless a Flush has just waited in vain.
  ~THistoryStore();
  THistoryStore(const THistoryStore &) = delete;
  THistoryStore &operator=(const THistoryStore &) = delete;

  // False for what is no page of its own: about:, zarvela:, javascript:, data:, blob: and view-source: addresses, and
  // those beyond any use (8192 characters).
  [[nodiscard]] static bool IsRecorded(const QString &address);

  // One more visit. An empty title leaves the one that is known. What IsRecorded refuses does nothing, here and below.
  void AddVisit(const QString &address, const QString &title, const QDateTime &when = QDateTime::currentDateTime());
  // Gives a page that was visited its title.
  void SetTitle(const QString &address, const QString &title);
  void Remove(const QString &address);
  void Clear();
  // Waits so long until all changes so far are written or given up; false when some are not.
  bool Flush(int milliseconds = 1000);

  // Pages that match `text` (see VisitWords), the most visited first, then the latest. An empty text finds nothing.
  // Bounded work, for each keystroke: the most visited pages are looked through first. Of the rest, those count that
  // hold the query's rarest word, the newest thousand of them; where all its words are common, the newest pages.
  [[nodiscard]] QList<TVisitedPage> Search(const QString &text, int limit) const;
  [[nodiscard]] std::optional<TVisitedPage> Find(const QString &address) const;
  [[nodiscard]] qint64 Count() const;

  // The name that a damaged file was given since this object was made; empty when nothing was wrong.
  [[nodiscard]] QString SetAsideFile() const;

 private:
  class TWriter;
  class TReader;
  std::unique_ptr<TWriter> m_writer;
  std::unique_ptr<TReader> m_reader;
};
