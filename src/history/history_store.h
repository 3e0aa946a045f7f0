#pragma once

#include <limits>
#include <memory>
#include <optional>
#include <QDateTime>
#include <QList>
#include <QObject>
#include <QString>

// The pages that were visited: address, title, first and last visit, number of visits.
//
// Kept in one SQLite file that several processes may have open. Nothing is opened before it is needed. Writers only put
// their change into a queue; a thread of the store's own writes what has gathered, in one transaction each time.
// Readers see what has been written (see Flush). A file that is damaged is set aside under a new name beside it and a
// new one is begun; one of an earlier version is brought up to date by the writer, and gives nothing until then. While
// another process keeps the file locked, or the disk is full, changes wait (ten thousand of them at the most). Where
// nothing can be written at all visits are dropped in silence: a history is no reason to disturb anybody. What is to be
// taken out is never dropped: it waits too, and that it must is told (see Troubled). One object serves one thread.

class THistoryWriter;

struct TVisitedPage {
  QString address{};
  QString title{};
  QDateTime firstVisit{};
  QDateTime lastVisit{};
  qint64 visits = 0;
  qint64 id = 0;  // in its file
};

// Pages by their last visit, from `from` to before `until` (milliseconds since 1970), and of one site, unless `site` is
// empty. The site of an address is its host with the port, in lower case; its scheme with the colon where it has none.
struct THistorySpan {
  qint64 from = std::numeric_limits<qint64>::min();
  qint64 until = std::numeric_limits<qint64>::max();
  QString site{};

  bool operator==(const THistorySpan &) const = default;
};

// How far what the user has asked to be taken out is gone.
struct THistoryRemoval {
  bool isGoing = false;
  qint64 done = 0;         // pages
  qint64 total = 0;        // 0 while it is not known
  bool isFailing = false;  // the disk or the file did not take it when it was last tried; it is tried again
};

// What the user is to know of.
enum class THistoryTrouble {
  SetAside,      // the file was damaged, see SetAsideFile
  RemovalFails,  // see THistoryRemoval::isFailing; once until all that is to go is gone
};

class THistoryStore final : public QObject {
  Q_OBJECT

 public:
  // The file is made, with its folder, at the first visit.
  explicit THistoryStore(const QString &filePath);
  // Writes what is still in the queue, for five seconds at the most; unless a Flush has just waited in vain.
  ~THistoryStore() override;
  [[nodiscard]] const QString &FilePath() const { return m_path; }

  // False for what is no page of its own: about:, zarvela:, javascript:, data:, blob: and view-source: addresses, and
  // those beyond any use (8192 characters).
  [[nodiscard]] static bool IsRecorded(const QString &address);

  // One more visit. An empty title leaves the one that is known. What IsRecorded refuses does nothing, here and below.
  void AddVisit(const QString &address, const QString &title, const QDateTime &when = QDateTime::currentDateTime());
  // Gives a page that was visited its title.
  void SetTitle(const QString &address, const QString &title);
  void Remove(const QString &address);
  // A page is wholly in one span or in the other: with it goes all that is known of its visits. Goes in steps, so that
  // a large one keeps nobody from writing. What is not gone five seconds after the program's end has begun stays.
  void RemoveSpan(const THistorySpan &span);
  // At most `most` pages that were not visited since, the oldest first.
  void RemoveOld(const QDateTime &before, int most);
  void Clear();
  // Of Remove, RemoveSpan and Clear.
  [[nodiscard]] THistoryRemoval Removal() const;
  // Waits so long until all changes so far are written or given up; false when some are not.
  bool Flush(int milliseconds = 1000);

  // Pages that match `text` (see VisitWords), the most visited first, then the latest. An empty text finds nothing.
  // Bounded work, for each keystroke: the most visited pages are looked through first. Of the rest, those count that
  // hold the query's rarest word, the newest thousand of them; where all its words are common, the newest pages.
  [[nodiscard]] QList<TVisitedPage> Search(const QString &text, int limit) const;
  [[nodiscard]] std::optional<TVisitedPage> Find(const QString &address) const;
  // Of the page that was not visited for the longest time; nothing where there is none, or it cannot be read now.
  [[nodiscard]] std::optional<QDateTime> OldestLastVisit() const;

  // The name that a damaged file was given since this object was made; empty when nothing was wrong.
  [[nodiscard]] QString SetAsideFile() const;

 Q_SIGNALS:
  // Both are emitted by the writer's thread. Something has been written.
  void Written();
  void Troubled(THistoryTrouble trouble);

 private:
  class TReader;
  const QString m_path;
  std::unique_ptr<THistoryWriter> m_writer;
  std::unique_ptr<TReader> m_reader;
};
