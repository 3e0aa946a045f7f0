#include <algorithm>
#include <filesystem>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QScopeGuard>
#include <QWebEngineView>
#include <utility>

#include "browser/downloads/download_item.h"
#include "browser/downloads/file_copy.h"
#include "browser/downloads/file_names.h"
#include "config/language.h"

namespace {

constexpr int LongestStop = 5000;  // ms that the end of the program waits for what is on its way to another disk

}  // namespace

// The part of the list that finds out where downloads go, and brings them there.

void TDownloadList::AskForPlace(TItem &item, QWebEngineDownloadRequest *request) {
  struct TAnswer {
    std::optional<QString> path{};
    bool isLate = false;
  };
  const QString id = item.id;
  item.waitsForPlace = true;
  item.state = TDownloadState::Waiting;
  const QString suggested = FreePath(m_saveQuestion.FirstFolder(), item.suggestedName);
  QPointer<QWebEngineDownloadRequest> alive(request);
  if (!m_saveQuestion.IsOpen()) {
    const auto answer = std::make_shared<TAnswer>();
    m_asking = id;
    m_saveQuestion.Ask(suggested, item.window, [this, id, answer](const QString &path) {
      answer->path = path;
      if (answer->isLate) TakePlace(id, path);
    });
    answer->isLate = true;
    TItem *asked = ItemOf(id);
    if (answer->path && (alive == nullptr || asked == nullptr || answer->path->isEmpty())) {
      if (alive != nullptr) alive->cancel();
      return TakePlace(id, *answer->path);
    }
    if (answer->path) {
      // It is there from the beginning.
      asked->waitsForPlace = false;
      asked->path = OwnPath(*answer->path);
      return Begin(*asked, alive);
    }
  }
  TItem *waiting = ItemOf(id);
  if (waiting == nullptr || alive == nullptr) return;
  // The suggested name stays free: the dialog would ask whether the file is to be replaced.
  waiting->path = suggested;
  waiting->writtenTo = FileNames::HiddenPath(suggested);
  Begin(*waiting, alive);
  if (waiting->state != TDownloadState::Failed) alive->pause();
}

void TDownloadList::TakePlace(const QString &id, const QString &path) {
  // What the user has clicked meanwhile is next, but not from within this answer.
  QMetaObject::invokeMethod(this, &TDownloadList::AskForNextPlace, Qt::QueuedConnection);
  TItem *item = ItemOf(id);
  if (item == nullptr || !item->waitsForPlace) return;
  item->waitsForPlace = false;
  if (path.isEmpty()) return DropUnplaced(*item);
  if (path != item->path) item->path = OwnPath(path);
  item->mayReplace = QFileInfo::exists(item->path);
  if (item->request == nullptr) {
    item->writtenTo.clear();
    item->state = TDownloadState::Waiting;
    return Announce(*item);
  }
  item->request->resume();
  Update(*item);
}

void TDownloadList::DropUnplaced(TItem &item) {
  // A small one is there already, under a name that was free, even if the engine has not said so yet. It is let go
  // first.
  const auto removeLast = qScopeGuard([part = std::exchange(item.writtenTo, {})] {
    if (!part.isEmpty()) QFile::remove(part);
  });
  if (!item.isRetry) {
    RemoveItem(RowOf(item));
    return CountActive();
  }
  if (item.request != nullptr) LetGo(item.request);
  item.request = nullptr;
  item.path.clear();
  item.state = TDownloadState::NotStarted;
  Announce(item);
}

void TDownloadList::AskForNextPlace() {
  if (m_saveQuestion.IsOpen()) return;
  // The oldest comes first.
  const auto next = std::find_if(m_items.rbegin(), m_items.rend(),
                                 [](const std::unique_ptr<TItem> &item) { return item->waitsForPlace; });
  if (next == m_items.rend()) return;
  const TItem &item = **next;
  m_asking = item.id;
  m_saveQuestion.Ask(item.path.isEmpty() ? FreePath(m_saveQuestion.FirstFolder(), item.suggestedName) : item.path,
                     item.window, [this, id = item.id](const QString &path) { TakePlace(id, path); });
}

void TDownloadList::MoveToPlace(TItem &item) {
  Release(item);
  item.failure.clear();
  const QFileInfo place(item.path);
  // What has come there meanwhile the dialog has not asked about.
  if (!item.mayReplace) item.path = FileNames::FreePath(place.path(), place.fileName(), {});
  std::error_code failure;
  std::filesystem::rename(item.writtenTo.toStdString(), item.path.toStdString(), failure);
  if (!failure) {
    item.writtenTo.clear();
    // It was about the file that was there then.
    item.mayReplace = false;
    item.state = TDownloadState::Finished;
    return Announce(item);
  }
  if (QFileInfo(item.writtenTo).path() == place.path() || !QFileInfo::exists(item.writtenTo)) return FailMove(item);
  // To another disk it takes its time. What stands in the place stays there until all of it has come beside it.
  item.state = TDownloadState::Running;
  item.move = ++m_lastMove;
  item.moveTo = FileNames::HiddenPath(item.path);
  m_moves[item.move] = std::make_unique<TFileCopy>(item.writtenTo, item.moveTo, this,
                                                   [this, move = item.move](TCopyEnd end) { EndMove(move, end); });
  Announce(item);
}

TDownloadList::TItem *TDownloadList::MovedItem(quint64 move) const {
  const auto found = std::ranges::find(m_items, move, [](const std::unique_ptr<TItem> &item) { return item->move; });
  return found == m_items.end() ? nullptr : found->get();
}

void TDownloadList::EndMove(quint64 move, TCopyEnd end) {
  m_moves.erase(move);
  TItem *item = MovedItem(move);
  if (item == nullptr) return;
  item->move = 0;
  const QString copy = std::exchange(item->moveTo, {});
  if (end != TCopyEnd::Good) return FailMove(*item, end == TCopyEnd::DiskFull);
  QFile::remove(std::exchange(item->writtenTo, copy));
  MoveToPlace(*item);
}

void TDownloadList::EndMoves() {
  for (const auto &[move, copy] : m_moves) copy->Stop();
  const QDeadlineTimer deadline(LongestStop);
  for (const auto &[move, copy] : m_moves) {
    // A disk that does not answer is left to itself.
    const bool hasEnded = copy->Wait(int(deadline.remainingTime()));
    TItem *item = MovedItem(move);
    if (item == nullptr) continue;
    item->move = 0;
    // All of it may have come there just now.
    if (hasEnded) QFile::remove(item->moveTo);
    item->moveTo.clear();
    KeepBeside(*item);
    item->state = TDownloadState::Finished;
    Announce(*item);
  }
  m_moves.clear();
}

void TDownloadList::FailMove(TItem &item, bool isDiskFull) {
  const bool isThere = item.IsUnplaced();
  if (!isThere) item.writtenTo.clear();
  const QString folder = FolderFailure(QFileInfo(item.path).path());
  if (isDiskFull) {
    Fail(item, m_language.Text("DOWNLOADS", "DiskFull"));
  } else if (!folder.isEmpty()) {
    Fail(item, folder);
  } else if (isThere) {
    Fail(item, m_language.Text("DOWNLOADS", "FileFailed"));
  } else {
    Fail(item, m_language.Text("DOWNLOADS", "FileGone"));
  }
}

void TDownloadList::KeepBeside(TItem &item) {
  if (!item.IsUnplaced()) return;
  const QString path = FileNames::FreePath(QFileInfo(item.writtenTo).path(), QFileInfo(item.path).fileName(), {});
  item.path = QFile::rename(item.writtenTo, path) ? path : item.writtenTo;
  item.writtenTo.clear();
}

QString TDownloadList::OwnPath(const QString &path) const {
  const auto taken = [this](const QString &other) { return IsBeingWritten(other); };
  const QFileInfo chosen(path);
  return taken(path) ? FileNames::FreePath(chosen.path(), chosen.fileName(), taken) : path;
}
