#include "history/history_store.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <QElapsedTimer>
#include <QSet>
#include <utility>

#include "history/history_schema.h"
#include "history/history_writer.h"
#include "history/visit_words.h"

namespace {

using TKind = THistoryChange::TKind;
using TState = TStoreFile::TState;

// Readers are called many times while somebody types.
constexpr TStoreFile::TPatience Patience{.first = 50, .usual = 3};

constexpr qsizetype LongestAddress = 8192;
constexpr qsizetype LongestTitle = 1024;
// How many pages are looked through at each keystroke.
constexpr int MostUsedLookedAt = 1000;
constexpr int FoundLookedAt = 1000;
constexpr int NewestLookedAt = 5000;

// Pages from all over the history tell how common a word is. The index is asked for words that are rarer than this
// share of them: for a common one it would go through its whole list, and a short look at the pages finds it anyway.
// A sample is a few rows at each of many places, since it is the places that cost.
constexpr int SamplePlaces = 40;
constexpr int SampleRows = 12;
constexpr qsizetype MostHitsOfRareWord = 10;
constexpr qint64 SampleLife = 60000;  // milliseconds

constexpr std::array UnrecordedSchemes{"about", "zarvela", "javascript", "data", "blob", "view-source"};

QString Cleaned(const QString &title) {
  return title.simplified().left(LongestTitle);
}

bool IsMoreUsed(const TVisitedPage &a, const TVisitedPage &b) {
  return a.visits != b.visits ? a.visits > b.visits : a.lastVisit > b.lastVisit;
}

}  // namespace

class THistoryStore::TReader final {
 public:
  explicit TReader(const QString &filePath) : m_file(filePath, HistorySchema::Schema, Patience) {}

  // Null when there is nothing to read. A file that is damaged, or of an earlier version, is then told to the writer.
  [[nodiscard]] TSqliteConnection *Database(THistoryWriter &writer) {
    const TState state = m_file.Ensure(false);
    if (state == TState::Damaged) {
      m_file.Close();
      writer.Add({.kind = TKind::Damaged, .file = m_file.Identity()});
    }
    if (state == TState::Outdated && !std::exchange(m_wasOutdated, true)) writer.Add({.kind = TKind::Upgrade});
    return state == TState::Ready ? &m_file.Database() : nullptr;
  }
  // The index's expression for the rarest word of the query; empty when all are common. Only the last word of a part
  // may be unfinished.
  [[nodiscard]] QString RarestWord(TSqliteConnection &database, const QStringList &query);

 private:
  void TakeSample(TSqliteConnection &database);

  TStoreFile m_file;
  bool m_wasOutdated = false;
  QStringList m_sample;  // the words of pages from all over the history
  QElapsedTimer m_sampleAge;
};

QString THistoryStore::TReader::RarestWord(TSqliteConnection &database, const QStringList &query) {
  if (!m_sampleAge.isValid() || m_sampleAge.hasExpired(SampleLife)) TakeSample(database);
  QString rarest;
  qsizetype fewest = MostHitsOfRareWord + 1;
  qsizetype longest = 0;
  for (const QString &part : query) {
    const QStringList words = part.split(u' ', Qt::SkipEmptyParts);
    for (qsizetype i = 0; i < words.size(); ++i) {
      const bool isLast = i + 1 == words.size();
      const QString text = u' ' + words.at(i);
      const qsizetype hits = std::ranges::count_if(m_sample, [&](const QString &page) { return page.contains(text); });
      if (hits > fewest || (hits == fewest && text.size() <= longest) || hits > MostHitsOfRareWord) continue;
      fewest = hits;
      longest = text.size();
      rarest = u'"' + words.at(i) + (isLast ? QStringLiteral("\"*") : QStringLiteral("\""));
    }
  }
  return rarest;
}

void THistoryStore::TReader::TakeSample(TSqliteConnection &database) {
  m_sample.clear();
  m_sampleAge.start();
  qint64 first = 0;
  qint64 last = -1;
  {
    TSqliteStatement row = database.Use("SELECT min(id), max(id) FROM visits");
    if (row.Step()) {
      first = row.Integer(0);
      last = row.Integer(1);
    }
  }
  for (int i = 0; i < SamplePlaces && first <= last; ++i) {
    TSqliteStatement rows = database.Use("SELECT words FROM visits WHERE id >= ? ORDER BY id LIMIT ?");
    rows.Bind(first + (last - first) * i / SamplePlaces).Bind(SampleRows);
    while (rows.Step()) m_sample.append(rows.Text(0));
  }
}

THistoryStore::THistoryStore(const QString &filePath)
    : m_path(filePath),
      m_writer(std::make_unique<THistoryWriter>(
          filePath, [this] { Q_EMIT Written(); }, [this](THistoryTrouble trouble) { Q_EMIT Troubled(trouble); })),
      m_reader(std::make_unique<TReader>(filePath)) {}

THistoryStore::~THistoryStore() = default;

bool THistoryStore::IsRecorded(const QString &address) {
  const qsizetype colon = address.indexOf(u':');
  if (colon <= 0 || address.size() > LongestAddress) return false;
  const QString scheme = address.left(colon).toLower();
  return std::ranges::none_of(UnrecordedSchemes, [&](const char *own) { return scheme == QLatin1String(own); });
}

void THistoryStore::AddVisit(const QString &address, const QString &title, const QDateTime &when) {
  if (!IsRecorded(address)) return;
  m_writer->Add({TKind::Visit, address, Cleaned(title), when.toMSecsSinceEpoch()});
}

void THistoryStore::SetTitle(const QString &address, const QString &title) {
  if (IsRecorded(address)) m_writer->Add({TKind::Title, address, Cleaned(title)});
}

void THistoryStore::Remove(const QString &address) {
  m_writer->Add({TKind::Remove, address});
}

void THistoryStore::RemoveSpan(const THistorySpan &span) {
  m_writer->Add({.kind = TKind::RemoveSpan, .address = span.site, .when = span.from, .until = span.until});
}

void THistoryStore::RemoveOld(const QDateTime &before, int most) {
  m_writer->Add({.kind = TKind::RemoveOld, .until = before.toMSecsSinceEpoch(), .most = most});
}

THistoryRemoval THistoryStore::Removal() const {
  return m_writer->Removal();
}

void THistoryStore::Clear() {
  m_writer->Add({TKind::Clear});
}

bool THistoryStore::Flush(int milliseconds) {
  return m_writer->Flush(std::chrono::milliseconds(milliseconds));
}

QList<TVisitedPage> THistoryStore::Search(const QString &text, int limit) const {
  const QStringList query = VisitWords::Query(text);
  if (query.isEmpty() || limit <= 0) return {};
  TSqliteConnection *database = m_reader->Database(*m_writer);
  if (database == nullptr) return {};

  QList<TVisitedPage> pages;
  QSet<qint64> seen;
  // In the order of the answer: once it is full nothing better can follow.
  const auto gather = [&](TSqliteStatement &rows, qsizetype most) {
    while (pages.size() < most && rows.Step()) {
      const qint64 id = rows.Integer(HistorySchema::IdColumn);
      if (!VisitWords::Match(rows.Text(HistorySchema::NextColumn), query) || seen.contains(id)) continue;
      seen.insert(id);
      pages.append(HistorySchema::PageOf(rows));
    }
  };
  {
    TSqliteStatement rows =
        database->Use("SELECT " ZV_PAGE_COLUMNS ", words FROM visits ORDER BY count DESC, last DESC LIMIT ?");
    gather(rows.Bind(MostUsedLookedAt), limit);
  }
  if (pages.size() < limit) {
    if (const QString word = m_reader->RarestWord(*database, query); !word.isEmpty()) {
      TSqliteStatement rows = database->Use("SELECT " ZV_PAGE_COLUMNS
                                            ", visits.words FROM search JOIN visits ON id = search.rowid "
                                            "WHERE search MATCH ? ORDER BY search.rowid DESC LIMIT ?");
      gather(rows.Bind(word).Bind(FoundLookedAt), MostUsedLookedAt + FoundLookedAt);
    } else {
      TSqliteStatement rows = database->Use("SELECT " ZV_PAGE_COLUMNS ", words FROM visits ORDER BY id DESC LIMIT ?");
      gather(rows.Bind(NewestLookedAt), MostUsedLookedAt + NewestLookedAt);
    }
    std::ranges::stable_sort(pages, IsMoreUsed);
  }
  return pages.mid(0, limit);
}

std::optional<TVisitedPage> THistoryStore::Find(const QString &address) const {
  TSqliteConnection *database = m_reader->Database(*m_writer);
  if (database == nullptr) return std::nullopt;
  TSqliteStatement row = database->Use("SELECT " ZV_PAGE_COLUMNS " FROM visits WHERE address = ?");
  if (!row.Bind(address).Step()) return std::nullopt;
  return HistorySchema::PageOf(row);
}

std::optional<QDateTime> THistoryStore::OldestLastVisit() const {
  TSqliteConnection *database = m_reader->Database(*m_writer);
  if (database == nullptr) return std::nullopt;
  TSqliteStatement row = database->Use("SELECT min(last) FROM visits");
  if (!row.Step() || !row.IsInteger(0)) return std::nullopt;
  return QDateTime::fromMSecsSinceEpoch(row.Integer(0));
}

QString THistoryStore::SetAsideFile() const {
  return m_writer->SetAsideFile();
}
