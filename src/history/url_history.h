#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <QDateTime>
#include <QList>
#include <QObject>
#include <QString>

#include "history/history_thread.h"

// A visited page as it is found.
struct TUrlHistoryEntry {
  QString address{};
  QString title{};
  QDateTime lastVisited{};
  QDateTime lastUpdated{};  // of what the history knows of the page: that is at each visit
  QDateTime expires{};      // not valid where the history is kept for ever
  qint64 visits = 0;
};

// Looks through the history and keeps what it finds, in the order in which it comes: pages that were visited first
// last. The looking is done on a thread, one search at a time; what is found comes in pieces, the first of them at
// once.
class TUrlHistory final : public QObject {
  Q_OBJECT

 public:
  // May refuse an entry by its last argument, which is true at first. It is called on the thread of its owner.
  using TAccept = std::function<void(const QString &address, const QString &title, const QDateTime &lastVisited,
                                     const QDateTime &lastUpdated, const QDateTime &expires, bool &isAccepted)>;
  enum class TKey { Title, Address, LastVisited, Visits };

  // `store` must outlive this object.
  explicit TUrlHistory(THistoryStore &store, QObject *parent = nullptr);
  ~TUrlHistory() override;

  void SetAccept(TAccept accept) { m_accept = std::move(accept); }
  // How long pages are kept, for `expires`; 0 and less for ever, as it is at first.
  void SetDays(int days) { m_days = days; }

  // Whether an entry is kept. All are where `text` is empty. Else upper and lower case count, and the tests stand upon
  // each other: with `mode` 2 the text must be in the address, with 1 in the title, with 0 in the address; and then, in
  // every mode, in the title too. So 0 and 2 mean address and title both; this is meant.
  [[nodiscard]] static bool IsKept(const QString &address, const QString &title, const QString &text, int mode);

  // Drops what was found, ends a search that goes on, and begins with this one (see IsKept).
  void Enumerate(const QString &text, int mode);
  // The same for words, in any order and case, of title or address (see VisitWords). At most `limit` entries.
  void EnumerateWords(const QString &text, qsizetype limit);
  // What was found so far stays. Finished follows no more.
  void Cancel();
  [[nodiscard]] bool IsSearching() const { return m_run != nullptr; }
  // The last search has ended before its time, because the history could not be read.
  [[nodiscard]] bool HasFailed() const { return m_hasFailed; }

  [[nodiscard]] const QList<TUrlHistoryEntry> &Entries() const { return m_entries; }
  // Those that are there. Titles and addresses are compared without regard to case; what is equal keeps its order.
  void Sort(TKey key, Qt::SortOrder order) { m_entries = Sorted(std::move(m_entries), key, order); }
  // The same for any thread, and what it has made of Entries put back; they must not have changed meanwhile.
  [[nodiscard]] static QList<TUrlHistoryEntry> Sorted(QList<TUrlHistoryEntry> entries, TKey key, Qt::SortOrder order);
  void SetOrder(QList<TUrlHistoryEntry> sorted) { m_entries = std::move(sorted); }
  // Takes the page out of the history, and of the entries.
  void Remove(const QString &address);
  // Takes all pages out of the history, and drops the entries.
  void Clear();

 Q_SIGNALS:
  // So many entries have come at the end.
  void Found(qsizetype count);
  // All has been looked through, the limit is reached, or it has failed.
  void Finished();

 private:
  using TRun = std::shared_ptr<std::atomic_bool>;  // true when it is to end
  enum class TPiece { MoreFollow, Last, LastOfFailed };
  using TMatch = std::function<bool(const THistoryRow &)>;

  void Begin(const TMatch &match, qsizetype limit);
  void Take(const TRun &run, const QList<TUrlHistoryEntry> &entries, TPiece piece);

  THistoryStore &m_store;
  TAccept m_accept;
  int m_days = 0;
  qsizetype m_limit = 0;
  QList<TUrlHistoryEntry> m_entries;
  bool m_hasFailed = false;
  TRun m_run;
  std::unique_ptr<THistoryThread> m_thread;
};
