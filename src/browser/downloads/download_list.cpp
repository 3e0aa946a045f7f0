#include "browser/downloads/download_list.h"

#include <algorithm>
#include <QDesktopServices>
#include <QDir>
#include <QIcon>
#include <QMimeDatabase>
#include <QUuid>
#include <QWebEngineProfile>
#include <QWebEngineView>

#include "browser/downloads/download_item.h"
#include "browser/downloads/download_owners.h"
#include "browser/downloads/download_text.h"
#include "browser/downloads/file_copy.h"
#include "browser/downloads/file_names.h"
#include "browser/downloads/kept_downloads.h"
#include "browser/downloads/page_downloads.h"
#include "config/language.h"
#include "ui/shown_text.h"

namespace {

constexpr size_t MostItems = 500;   // the oldest inactive ones leave the list
constexpr int TickInterval = 1000;  // ms between looks at downloads that have come to a stop
constexpr int MostAtOnce = 4;  // that a page or the program starts; a host gets six connections, its pages included
constexpr int MostAtOnceByUser = 20;  // begun at once: what a form was sent for cannot be asked for again
constexpr int MostHeld = 100;         // of a page, until the user has answered
constexpr int MostHeldInside = 10;    // of these, files that the page has made itself
constexpr size_t MostWaiting = 2000;
constexpr qsizetype LongestShownAddress = 200;  // characters
constexpr int RetryPatience = 30000;            // ms that a server has for beginning to answer a retry

bool IsActiveState(TDownloadState state) {
  return state == TDownloadState::Running || state == TDownloadState::Paused || state == TDownloadState::Waiting;
}

// What a page has made itself is gone when it is not taken at once; it needs no connection either.
bool IsInside(const QUrl &address) {
  return address.scheme() == QLatin1String("blob") || address.scheme() == QLatin1String("data");
}

}  // namespace

TDownloadList::TDownloadList(QWebEngineProfile &profile, const TLanguage &language, TRegistryStore &store,
                             QObject *parent)
    : QAbstractListModel(parent),
      m_profile(profile),
      m_language(language),
      m_store(store),
      m_saveQuestion(language, store, this),
      m_opener([](const QUrl &address) { return QDesktopServices::openUrl(address); }) {
  m_tick.setInterval(TickInterval);
  connect(&m_tick, &QTimer::timeout, this, [this] {
    for (const std::unique_ptr<TItem> &item : m_items) {
      if (!IsActiveState(item->state)) continue;
      if (item->retryPage != nullptr && item->retrySince.elapsed() > RetryPatience) {
        Fail(*item, m_language.Text("DOWNLOADS", "NetworkFailed"));
      } else {
        Update(*item);
      }
    }
  });
  connect(&profile, &QWebEngineProfile::downloadRequested, this, &TDownloadList::TakeRequest);
}

TDownloadList::~TDownloadList() {
  EndMoves();
}

void TDownloadList::Keep(int window, const std::function<bool(int)> &isRunning) {
  m_kept = std::make_unique<TKeptDownloads>(m_store, window, isRunning);
  const QList<TKeptDownload> kept = m_kept->Read();
  if (kept.isEmpty()) return;
  beginInsertRows({}, rowCount(), rowCount() + int(kept.size()) - 1);
  for (const TKeptDownload &download : kept) {
    auto item = std::make_unique<TItem>();
    item->Restore(download);
    if (download.state == TKeptDownload::TState::UnderWay) {
      item->failure = m_language.Text("DOWNLOADS", "ProgramEnded");
      KeepItem(*item);
    }
    m_items.push_back(std::move(item));
  }
  endInsertRows();
}

void TDownloadList::KeepItem(TItem &item) {
  if (m_kept == nullptr || item.waitsForPlace || (item.keptState == item.state && item.keptPath == item.path)) return;
  item.keptState = item.state;
  item.keptPath = item.path;
  m_kept->Write(item.ToKeep());
}

void TDownloadList::SetOpener(std::function<bool(const QUrl &)> opener) {
  m_opener = std::move(opener);
}

void TDownloadList::TakeRequest(QWebEngineDownloadRequest *request) {
  const auto retried = std::find_if(m_items.begin(), m_items.end(), [request](const std::unique_ptr<TItem> &item) {
    return item->retryPage != nullptr && item->retryToken == request->suggestedFileName();
  });
  if (retried != m_items.end()) return TakeRetry(**retried, request);
  const auto resumed = std::find_if(m_items.begin(), m_items.end(), [request](const std::unique_ptr<TItem> &item) {
    return item->request != nullptr && item->request->id() == request->id();
  });
  if (resumed != m_items.end()) {
    // After an interruption the engine goes on by itself, and asks about the same download once more.
    TItem &item = **resumed;
    item.request->disconnect(this);
    item.state = TDownloadState::Running;
    Begin(item, request);
    if (item.waitsForPlace) request->pause();
    return;
  }
  if (request->isSavePageDownload() && request->state() != QWebEngineDownloadRequest::DownloadRequested) {
    // A page that is being saved to a place already chosen: it runs by itself and is only listed.
    const QString path = QDir(request->downloadDirectory()).filePath(request->downloadFileName());
    TItem &item = AddItem(request->url(), path, TDownloadState::Running);
    item.isPage = true;
    return Follow(item, request);
  }
  TakeNewRequest(request);
}

void TDownloadList::TakeNewRequest(QWebEngineDownloadRequest *request) {
  using TVerdict = TPageDownloads::TVerdict;
  const QUrl address = request->url();
  TPageDownloads *page = TDownloadOwners::Of(m_profile).OwnerOf(*request);
  const TVerdict verdict = page != nullptr ? page->Judge() : TVerdict::First;
  if (verdict == TVerdict::Refused || m_items.size() >= MostWaiting) return request->cancel();
  if (verdict == TVerdict::Wait) return LetWait(request, page);
  const bool mayRun = RunningCount() < (verdict == TVerdict::ByUser ? MostAtOnceByUser : MostAtOnce);
  const bool beginsNow = mayRun || IsInside(address);
  if (verdict == TVerdict::Allowed) {
    if (!beginsNow) return LetWait(request, nullptr);
    return Begin(
        AddItem(address, FreePath(m_saveQuestion.Folder(), request->suggestedFileName()), TDownloadState::Running),
        request);
  }
  // What comes by itself while the user is asked where something is to go, or right after it, must not keep him busy:
  // it waits in the list, once. What he has clicked meanwhile is asked about next.
  const bool waitsInLine = verdict == TVerdict::ByUser && m_saveQuestion.IsOpen();
  if (m_saveQuestion.Disturbs() && !waitsInLine) {
    const bool known = std::any_of(m_items.begin(), m_items.end(), [&address](const std::unique_ptr<TItem> &item) {
      return item->state == TDownloadState::NotStarted && item->address == address;
    });
    if (!known) AddItem(address, {}, TDownloadState::NotStarted).suggestedName = request->suggestedFileName();
    request->cancel();
    return;
  }
  TItem &item = AddItem(address, {}, TDownloadState::Waiting, true);
  item.suggestedName = request->suggestedFileName();
  const QWebEngineView *view = page != nullptr ? QWebEngineView::forPage(&page->Page()) : nullptr;
  if (view != nullptr) item.window = view->window();
  if (!beginsNow) request->cancel();
  AskForPlace(item, beginsNow ? request : nullptr);
}

void TDownloadList::LetWait(QWebEngineDownloadRequest *request, TPageDownloads *asks) {
  const bool inside = IsInside(request->url());
  if (asks != nullptr) {
    const auto held = [&](bool onlyInside) {
      return std::count_if(m_items.begin(), m_items.end(), [&](const std::unique_ptr<TItem> &item) {
        return item->asks == asks && (!onlyInside || IsInside(item->address));
      });
    };
    if (held(false) >= MostHeld || (inside && held(true) >= MostHeldInside)) return request->cancel();
    connect(
        asks, &TPageDownloads::Answered, this, [this, asks](bool allow) { OnAnswered(asks, allow); },
        Qt::SingleShotConnection);
  }
  TItem &item =
      AddItem(request->url(), FreePath(m_saveQuestion.Folder(), request->suggestedFileName()), TDownloadState::Waiting);
  item.suggestedName = request->suggestedFileName();
  item.asks = asks;
  if (!inside) return request->cancel();
  Begin(item, request);
  request->pause();
}

void TDownloadList::OnAnswered(const TPageDownloads *page, bool allow) {
  for (int row = rowCount() - 1; row >= 0; --row) {
    TItem &item = *Item(row);
    if (item.asks != page) continue;
    item.asks = nullptr;
    if (!allow) {
      // A small one that the page has made is there already, under a name that was free.
      if (item.request != nullptr && item.request->isFinished()) QFile::remove(item.path);
      if (m_kept != nullptr) m_kept->Remove(item.id);
      RemoveItem(row);
    } else if (item.request != nullptr) {
      item.request->resume();
      Update(item);
    } else {
      Announce(item);
    }
  }
  CountActive();
}

int TDownloadList::RunningCount() const {
  return int(std::count_if(m_items.begin(), m_items.end(),
                           [](const std::unique_ptr<TItem> &item) { return item->state == TDownloadState::Running; }));
}

void TDownloadList::StartNext() {
  m_looksForNext = false;
  for (size_t row = m_items.size(); row > 0 && RunningCount() < MostAtOnce; --row) {
    TItem &item = *m_items[row - 1];
    if (item.state == TDownloadState::Waiting && item.asks == nullptr && !item.waitsForPlace) Request(item);
  }
}

QString TDownloadList::FreePath(const QString &folder, const QString &name) const {
  return FileNames::FreePath(folder, FileNames::Safe(name, m_language.Text("DOWNLOADS", "FallbackName")),
                             [this](const QString &path) { return IsBeingWritten(path); });
}

void TDownloadList::TakeRetry(TItem &item, QWebEngineDownloadRequest *request) {
  // The page is at work in this very call.
  item.retryPage.release()->deleteLater();
  if (item.path.isEmpty()) {
    item.isRetry = true;
    return AskForPlace(item, request);
  }
  const QString path = std::exchange(item.path, {});
  const QFileInfo file(path);
  item.path = item.mayReplace ? OwnPath(path)
                              : FileNames::FreePath(file.path(), file.fileName(),
                                                    [this](const QString &other) { return IsBeingWritten(other); });
  Begin(item, request);
}

QString TDownloadList::FolderFailure(const QString &folder) const {
  const QFileInfo info(folder);
  if (!info.isDir()) return m_language.Text("DOWNLOADS", "FolderGone");
  return info.isWritable() ? QString() : m_language.Text("DOWNLOADS", "NoPermission");
}

void TDownloadList::Begin(TItem &item, QWebEngineDownloadRequest *request) {
  const QFileInfo file(item.writtenTo.isEmpty() ? item.path : item.writtenTo);
  if (const QString failure = FolderFailure(file.path()); !failure.isEmpty()) {
    request->cancel();
    return Fail(item, failure);
  }
  request->setDownloadDirectory(file.path());
  request->setDownloadFileName(file.fileName());
  Follow(item, request);
  request->accept();
  Update(item);
}

void TDownloadList::Follow(TItem &item, QWebEngineDownloadRequest *request) {
  item.request = request;
  item.failure.clear();
  item.received = 0;
  item.sampleReceived = 0;
  item.speed = 0;
  item.sampleSince.start();
  const auto update = [this, &item] { Update(item); };
  connect(request, &QWebEngineDownloadRequest::receivedBytesChanged, this, update);
  connect(request, &QWebEngineDownloadRequest::totalBytesChanged, this, update);
  connect(request, &QWebEngineDownloadRequest::isPausedChanged, this, update);
  connect(request, &QWebEngineDownloadRequest::stateChanged, this, update);
  connect(request, &QWebEngineDownloadRequest::interruptReasonChanged, this, update);
}

void TDownloadList::Update(TItem &item) {
  const QWebEngineDownloadRequest *request = item.request;
  if (request == nullptr) return;
  item.received = request->receivedBytes();
  item.total = request->totalBytes();
  item.MeasureSpeed();
  if (item.asks != nullptr || item.waitsForPlace) return Announce(item);
  switch (request->state()) {
    case QWebEngineDownloadRequest::DownloadRequested:
    case QWebEngineDownloadRequest::DownloadInProgress:
      item.state = request->isPaused() ? TDownloadState::Paused : TDownloadState::Running;
      break;
    case QWebEngineDownloadRequest::DownloadCompleted:
      if (item.state == TDownloadState::Cancelled) break;
      if (!item.writtenTo.isEmpty()) return MoveToPlace(item);
      // Its folder may have been deleted while the engine was writing.
      if (!QFileInfo::exists(item.path)) return Fail(item, m_language.Text("DOWNLOADS", "FileGone"));
      item.state = TDownloadState::Finished;
      item.mayReplace = false;
      break;
    case QWebEngineDownloadRequest::DownloadCancelled:
      item.state = TDownloadState::Cancelled;
      break;
    case QWebEngineDownloadRequest::DownloadInterrupted:
      return Fail(item, DownloadText::Failure(request->interruptReason(), m_language));
  }
  Announce(item);
}

void TDownloadList::Fail(TItem &item, const QString &reason) {
  item.state = TDownloadState::Failed;
  item.failure = reason;
  item.retryPage.reset();
  Announce(item);
}

void TDownloadList::Announce(TItem &item) {
  KeepItem(item);
  const QModelIndex changed = index(RowOf(item));
  Q_EMIT dataChanged(changed, changed);
  CountActive();
  const bool isFinished = item.state == TDownloadState::Finished;
  const bool isNew = isFinished && !item.isToldFinished;
  item.isToldFinished = isFinished;
  if (isNew) Q_EMIT Finished(item.path);
}

void TDownloadList::CountActive() {
  if (!std::exchange(m_looksForNext, true))
    QMetaObject::invokeMethod(this, &TDownloadList::StartNext, Qt::QueuedConnection);
  const int active = int(std::count_if(
      m_items.begin(), m_items.end(), [](const std::unique_ptr<TItem> &other) { return IsActiveState(other->state); }));
  if (active == m_activeCount) return;
  m_activeCount = active;
  active > 0 ? m_tick.start() : m_tick.stop();
  Q_EMIT ActiveChanged(active);
}

TDownloadList::TItem &TDownloadList::AddItem(const QUrl &address, const QString &path, TDownloadState state,
                                             bool waitsForPlace) {
  for (size_t row = m_items.size(); m_items.size() >= MostItems && row > 0; --row) {
    if (!IsActiveState(m_items[row - 1]->state)) RemoveItem(int(row) - 1);
  }
  beginInsertRows({}, 0, 0);
  TItem &item = **m_items.insert(m_items.begin(), std::make_unique<TItem>());
  item.address = address;
  item.path = path;
  item.state = state;
  item.waitsForPlace = waitsForPlace;
  endInsertRows();
  Announce(item);
  return item;
}

void TDownloadList::RemoveItem(int row) {
  // A line never takes a file that is whole with it.
  KeepBeside(*m_items[size_t(row)]);
  if (QWebEngineDownloadRequest *request = m_items[size_t(row)]->request) {
    LetGo(request);
    request->deleteLater();
  }
  beginRemoveRows({}, row, row);
  m_items.erase(m_items.begin() + row);
  endRemoveRows();
}

void TDownloadList::LetGo(QWebEngineDownloadRequest *request) {
  request->disconnect(this);
  // Otherwise the engine may go on with an interrupted one by itself.
  request->cancel();
}

void TDownloadList::Release(TItem &item) {
  if (item.request == nullptr) return;
  LetGo(item.request);
  item.request->deleteLater();
  item.request = nullptr;
}

bool TDownloadList::IsBeingWritten(const QString &path) const {
  return std::any_of(m_items.begin(), m_items.end(), [&path](const std::unique_ptr<TItem> &item) {
    return IsActiveState(item->state) && (item->path == path || item->writtenTo == path || item->moveTo == path);
  });
}

int TDownloadList::ActiveCount() const {
  return m_activeCount;
}

void TDownloadList::CancelAll() {
  EndMoves();
  for (int row = 0; row < rowCount(); ++row) Cancel(row);
}

TDownloadState TDownloadList::State(int row) const {
  const TItem *item = Item(row);
  return item != nullptr ? item->state : TDownloadState::Cancelled;
}

bool TDownloadList::CanPause(int row) const {
  const TItem *item = Item(row);
  return item != nullptr && item->state == TDownloadState::Running && item->request != nullptr &&
         !item->request->isSavePageDownload();
}

bool TDownloadList::CanResume(int row) const {
  const TItem *item = Item(row);
  return item != nullptr && item->state == TDownloadState::Paused && item->request != nullptr;
}

bool TDownloadList::CanCancel(int row) const {
  const TItem *item = Item(row);
  return item != nullptr && IsActiveState(item->state);
}

bool TDownloadList::CanRetry(int row) const {
  const TItem *item = Item(row);
  if (item == nullptr || IsActiveState(item->state)) return false;
  if (item->IsUnplaced()) return true;
  // What a page made itself ("blob:") is gone with the page; a page being saved is saved again from its menu.
  return (item->state != TDownloadState::Finished || item->IsGone()) && !item->address.isEmpty() &&
         item->address.scheme() != "blob" && !item->isPage;
}

bool TDownloadList::CanOpen(int row) const {
  const TItem *item = Item(row);
  return item != nullptr && item->state == TDownloadState::Finished && !item->IsGone();
}

void TDownloadList::Pause(int row) {
  if (CanPause(row)) Item(row)->request->pause();
}

void TDownloadList::Resume(int row) {
  if (CanResume(row)) Item(row)->request->resume();
}

void TDownloadList::Cancel(int row) {
  if (!CanCancel(row)) return;
  TItem &item = *Item(row);
  // From here on it is the user's own: no answer to the page may take it away.
  item.asks = nullptr;
  const bool isAsked = std::exchange(item.waitsForPlace, false) && m_asking == item.id;
  if (item.request != nullptr && item.retryPage == nullptr && !item.request->isFinished()) {
    const QString part = item.writtenTo;
    item.request->cancel();
    // The engine leaves a file that it has just finished, and may say so later.
    if (!part.isEmpty()) QFile::remove(part);
  } else {
    CancelWhole(item);
  }
  if (isAsked) m_saveQuestion.Close();
}

void TDownloadList::CancelWhole(TItem &item) {
  item.retryPage.reset();
  if (item.request != nullptr && item.request->state() == QWebEngineDownloadRequest::DownloadCompleted)
    QFile::remove(item.writtenTo.isEmpty() ? item.path : item.writtenTo);
  Release(item);
  if (const auto move = m_moves.find(std::exchange(item.move, 0)); move != m_moves.end()) {
    move->second->Stop();
    QFile::remove(item.writtenTo);
    item.moveTo.clear();
  }
  item.state = TDownloadState::Cancelled;
  Announce(item);
}

void TDownloadList::Retry(int row) {
  if (!CanRetry(row)) return;
  TItem &item = *Item(row);
  if (item.IsUnplaced()) return MoveToPlace(item);
  if (item.request != nullptr) LetGo(item.request);
  item.request = nullptr;
  item.writtenTo.clear();
  if (!item.remains.isEmpty()) QFile::remove(std::exchange(item.remains, {}));
  item.received = 0;
  item.total = -1;
  item.speed = 0;
  // What the user asks for again does not wait behind what a page has started.
  RunningCount() < MostAtOnceByUser ? Request(item) : LetWaitAgain(item);
}

void TDownloadList::LetWaitAgain(TItem &item) {
  item.state = TDownloadState::Waiting;
  Announce(item);
}

void TDownloadList::Request(TItem &item) {
  item.state = TDownloadState::Running;
  item.retryPage = std::make_unique<QWebEnginePage>(&m_profile);
  item.retrySince.start();
  Announce(item);
  item.retryToken = QUuid::createUuid().toString(QUuid::WithoutBraces) + ".retry";
  item.retryPage->download(item.address, item.retryToken);
}

bool TDownloadList::IsExecutable(int row) const {
  const TItem *item = Item(row);
  return item != nullptr && FileNames::IsExecutable(item->path);
}

bool TDownloadList::Open(int row) {
  return CanOpen(row) && m_opener(QUrl::fromLocalFile(Item(row)->path));
}

bool TDownloadList::OpenFolder(int row) {
  const TItem *item = Item(row);
  if (item == nullptr || item->path.isEmpty()) return false;
  const QString folder = QFileInfo(item->path).path();
  return QFileInfo(folder).isDir() && m_opener(QUrl::fromLocalFile(folder));
}

void TDownloadList::Remove(int row) {
  if (Item(row) == nullptr || CanCancel(row)) return;
  if (m_kept != nullptr) m_kept->Remove(Item(row)->id);
  RemoveItem(row);
}

void TDownloadList::ClearFinished() {
  for (int row = rowCount() - 1; row >= 0; --row) Remove(row);
}

int TDownloadList::rowCount(const QModelIndex &parent) const {
  return parent.isValid() ? 0 : int(m_items.size());
}

QVariant TDownloadList::data(const QModelIndex &index, int role) const {
  const TItem *item = index.column() == 0 ? Item(index.row()) : nullptr;
  if (item == nullptr) return {};
  const QString name = item->path.isEmpty()
                           ? FileNames::Safe(item->suggestedName, m_language.Text("DOWNLOADS", "FallbackName"))
                           : QFileInfo(item->path).fileName();
  switch (role) {
    case Qt::DisplayRole:
      return name;
    case Qt::DecorationRole:
      return QIcon::fromTheme(QMimeDatabase().mimeTypeForFile(name, QMimeDatabase::MatchExtension).iconName());
    case Qt::ToolTipRole:
      return PlainTip((item->path.isEmpty() ? name : QDir::toNativeSeparators(item->path)) + QStringLiteral(" — ") +
                      Shortened(item->address.toDisplayString(), LongestShownAddress));
    case Qt::AccessibleTextRole:
      return QString(name + ". " + StatusText(*item) + ". " + item->TimeText());
    case PathRole:
      return item->path;
    case AddressRole:
      return item->address.toString();
    case StateRole:
      return int(item->state);
    case ReceivedRole:
      return item->received;
    case TotalRole:
      return item->total;
    case PercentRole:
      return item->total > 0 ? int(qBound(qint64(0), item->received * 100 / item->total, qint64(100))) : -1;
    case StatusRole:
      return StatusText(*item);
    case TimeRole:
      return item->TimeText();
    default:
      return {};
  }
}

TDownloadList::TItem *TDownloadList::Item(int row) const {
  return row >= 0 && row < rowCount() ? m_items[size_t(row)].get() : nullptr;
}

TDownloadList::TItem *TDownloadList::ItemOf(const QString &id) const {
  const auto found = std::ranges::find(m_items, id, [](const std::unique_ptr<TItem> &item) { return item->id; });
  return found == m_items.end() ? nullptr : found->get();
}

int TDownloadList::RowOf(const TItem &item) const {
  const auto found = std::find_if(m_items.begin(), m_items.end(),
                                  [&item](const std::unique_ptr<TItem> &other) { return other.get() == &item; });
  return found == m_items.end() ? -1 : int(found - m_items.begin());
}

QString TDownloadList::StatusText(const TItem &item) const {
  const QString amount = DownloadText::Amount(item.received, item.total, m_language);
  switch (item.state) {
    case TDownloadState::Running: {
      const QString pace = DownloadText::Pace(item.received, item.total, item.speed, m_language);
      return pace.isEmpty() ? amount : m_language.Text("DOWNLOADS", "RunningLine").arg(amount, pace);
    }
    case TDownloadState::Paused:
      return m_language.Text("DOWNLOADS", "PausedLine").arg(amount);
    case TDownloadState::Finished:
      if (item.IsGone()) return m_language.Text("DOWNLOADS", "FileGone");
      return m_language.Text("DOWNLOADS", "FinishedLine").arg(DownloadText::Amount(item.received, -1, m_language));
    case TDownloadState::Cancelled:
      return m_language.Text("DOWNLOADS", "CancelledLine");
    case TDownloadState::Failed:
      return m_language.Text("DOWNLOADS", "FailedLine").arg(item.failure);
    case TDownloadState::Waiting:
      if (item.waitsForPlace) return m_language.Text("DOWNLOADS", "PlaceLine");
      return item.asks != nullptr ? m_language.Text("DOWNLOADS", "AskingLine")
                                  : m_language.Text("DOWNLOADS", "WaitingLine");
    case TDownloadState::NotStarted:
      return m_language.Text("DOWNLOADS", "NotStartedLine");
  }
  return {};
}
