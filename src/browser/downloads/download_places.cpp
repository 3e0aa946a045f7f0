#include <algorithm>
#include <filesystem>
#include <QDir>
#include <QFile>
#include <QThread>
#include <QWebEngineView>
#include <utility>

#include "browser/downloads/download_item.h"
#include "browser/downloads/file_names.h"
#include "config/language.h"

// The part of the list that finds out where downloads go, and brings them there.

void TDownloadList::AskForPlace(TItem &item, QWebEngineDownloadRequest *request) {
  struct TAnswer {
    std::optional<QString> path{};
    bool isLate = false;
  };
  const QString id = item.id;
  item.waitsForPlace = true;
  item.state = TDownloadState::Waiting;
  const QString suggested = FreePath(item.suggestedName);
  QPointer<QWebEngineDownloadRequest> alive(request);
  if (!m_saveQuestion.IsOpen()) {
    const auto answer = std::make_shared<TAnswer>();
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
  // A small one is there already, under a name that was free.
  if (item.request != nullptr && item.request->isFinished()) QFile::remove(item.writtenTo);
  if (!item.isRetry) {
    RemoveItem(RowOf(item));
    return CountActive();
  }
  if (item.request != nullptr) LetGo(item.request);
  item.request = nullptr;
  item.path.clear();
  item.writtenTo.clear();
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
  m_saveQuestion.Ask(item.path.isEmpty() ? FreePath(item.suggestedName) : item.path, item.window,
                     [this, id = item.id](const QString &path) { TakePlace(id, path); });
}

void TDownloadList::MoveToPlace(TItem &item) {
  // What has come there meanwhile the dialog has not asked about.
  if (!item.mayReplace)
    item.path = FileNames::FreePath(QFileInfo(item.path).path(), QFileInfo(item.path).fileName(), {});
  const std::filesystem::path from(std::exchange(item.writtenTo, {}).toStdString());
  const std::filesystem::path to(item.path.toStdString());
  std::error_code failure;
  std::filesystem::rename(from, to, failure);
  if (!failure) return Update(item);
  // To another disk it takes its time.
  item.isMoving = true;
  m_movers.emplace_back(QThread::create([this, from, to, id = item.id] {
    std::error_code error;
    std::filesystem::copy_file(from, to, std::filesystem::copy_options::overwrite_existing, error);
    std::error_code ignored;
    if (!error) std::filesystem::remove(from, ignored);
    QMetaObject::invokeMethod(
        this, [this, id, isGood = !error] { EndMove(id, isGood); }, Qt::QueuedConnection);
  }));
  m_movers.back()->start();
}

void TDownloadList::EndMove(const QString &id, bool isGood) {
  TItem *item = ItemOf(id);
  if (item == nullptr) return;
  item->isMoving = false;
  if (isGood) return Update(*item);
  Fail(*item, m_language.Text("DOWNLOADS", "FileFailed"));
}

QString TDownloadList::OwnPath(const QString &path) const {
  const auto taken = [this](const QString &other) { return IsBeingWritten(other); };
  const QFileInfo chosen(path);
  return taken(path) ? FileNames::FreePath(chosen.path(), chosen.fileName(), taken) : path;
}
