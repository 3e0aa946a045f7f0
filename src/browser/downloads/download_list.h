#pragma once

#include <functional>
#include <map>
#include <memory>
#include <QAbstractListModel>
#include <QTimer>
#include <QUrl>
#include <vector>

#include "browser/downloads/save_question.h"

class QWebEngineDownloadRequest;
class QWebEnginePage;
class QWebEngineProfile;
class TFileCopy;
class TKeptDownloads;
class TLanguage;
class TPageDownloads;
class TRegistryStore;

enum class TCopyEnd;

enum class TDownloadState {
  Running,
  Paused,
  Finished,
  Cancelled,
  Failed,
  Waiting,     // for its turn, or for the answer whether its page may have more
  NotStarted,  // came while or right after the user was asked about another one; Retry asks for it
};

// Every download of the profile, newest first; tabs may close meanwhile. What earlier runs have left stands behind them
// (Keep).
//
// A file goes where the user says. Names that a server suggests are made safe first, and nothing is ever overwritten
// without the file dialog having asked. Pages that are being saved go where the caller of the save has decided.
//
// A few run at a time, each of which holds files and connections; the others wait. The user is asked before a page gets
// more than one file by itself (TPageDownloads).
class TDownloadList final : public QAbstractListModel {
  Q_OBJECT

 public:
  enum TRole {
    PathRole = Qt::UserRole,  // QString, with folder
    AddressRole,              // QString
    StateRole,                // int of TDownloadState
    ReceivedRole,             // qint64, bytes
    TotalRole,                // qint64, bytes; -1 when not known
    PercentRole,              // int 0..100; -1 when the total is not known
    StatusRole,               // QString, one readable line
    TimeRole,                 // QString, when it was asked for
  };

  TDownloadList(QWebEngineProfile &profile, const TLanguage &language, TRegistryStore &store,
                QObject *parent = nullptr);
  ~TDownloadList() override;

  // From now on the list outlives the run: what was kept is in it, and what comes is kept. `window` is this process's
  // number, from 1; `isRunning` tells whether another one's process is there.
  void Keep(int window, const std::function<bool(int)> &isRunning);
  // How the user is asked where to save. Meanwhile the file is fetched already, beside the place that is suggested.
  // What pages want by themselves while he is asked, and right after it, waits in the list.
  [[nodiscard]] TSaveQuestion &SaveQuestion() { return m_saveQuestion; }
  // Replaces the desktop's "open" for files and folders; returns false when it could not be opened.
  void SetOpener(std::function<bool(const QUrl &)> opener);

  // Downloads that run, wait or are paused: they would be lost when the program ends.
  [[nodiscard]] int ActiveCount() const;
  // The program ends. A complete file that is on its way to another disk stays where it is, under a name of its own.
  void CancelAll();

  [[nodiscard]] TDownloadState State(int row) const;
  [[nodiscard]] bool CanPause(int row) const;
  [[nodiscard]] bool CanResume(int row) const;
  [[nodiscard]] bool CanCancel(int row) const;
  [[nodiscard]] bool CanRetry(int row) const;
  [[nodiscard]] bool CanOpen(int row) const;
  // Rows out of range, and rows where the operation makes no sense, are left alone.
  void Pause(int row);
  void Resume(int row);
  void Cancel(int row);
  // Starts a failed, cancelled or not started download again, to the same file; asks where when it has none yet.
  void Retry(int row);
  // True when opening the file could run a program: ask the user first.
  [[nodiscard]] bool IsExecutable(int row) const;
  // False when the desktop could not open it.
  bool Open(int row);
  bool OpenFolder(int row);
  // Takes a download that is not active out of the list; the file stays.
  void Remove(int row);
  void ClearFinished();

  [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

 Q_SIGNALS:
  void ActiveChanged(int count);
  // In this run; all of it is in its place.
  void Finished(const QString &path);

 private:
  struct TItem;

  void TakeRequest(QWebEngineDownloadRequest *request);
  void TakeNewRequest(QWebEngineDownloadRequest *request);
  // Keeps the request's file for when it is its turn.
  void LetWait(QWebEngineDownloadRequest *request, TPageDownloads *asks);
  void OnAnswered(const TPageDownloads *page, bool allow);
  // Asks for the item's file again, now or when it is its turn.
  void Request(TItem &item);
  void LetWaitAgain(TItem &item);
  void StartNext();
  void CountActive();
  [[nodiscard]] int RunningCount() const;
  [[nodiscard]] QString FreePath(const QString &folder, const QString &name) const;
  void TakeRetry(TItem &item, QWebEngineDownloadRequest *request);
  // Accepts the request into the item's path, or fails the item where its folder cannot be written.
  void Begin(TItem &item, QWebEngineDownloadRequest *request);
  void Follow(TItem &item, QWebEngineDownloadRequest *request);
  void Update(TItem &item);
  void Fail(TItem &item, const QString &reason);
  void Announce(TItem &item);
  TItem &AddItem(const QUrl &address, const QString &path, TDownloadState state, bool waitsForPlace = false);
  void RemoveItem(int row);
  // Writes down what has changed of it that is worth being kept.
  void KeepItem(TItem &item);
  void LetGo(QWebEngineDownloadRequest *request);
  // Asks where the item goes, as soon as nothing else is asked. `request` is taken meanwhile, or given up where it has
  // to wait for its turn.
  void AskForPlace(TItem &item, QWebEngineDownloadRequest *request);
  void TakePlace(const QString &id, const QString &path);
  void AskForNextPlace();
  void DropUnplaced(TItem &item);
  // Brings the whole file to where the user wants it.
  void MoveToPlace(TItem &item);
  void EndMove(quint64 move, TCopyEnd end);
  [[nodiscard]] TItem *MovedItem(quint64 move) const;
  // Stops what is on its way, within a few seconds, and keeps it.
  void EndMoves();
  void FailMove(TItem &item, bool isDiskFull = false);
  // Shows the whole file under a free name where it is.
  static void KeepBeside(TItem &item);
  // Cancels what the engine has nothing to do with any more: what of it is there goes.
  void CancelWhole(TItem &item);
  // The engine is done with it.
  void Release(TItem &item);
  // Why nothing can be written into that folder; empty where it can.
  [[nodiscard]] QString FolderFailure(const QString &folder) const;
  // Two downloads must not write to one file, even when the user picks it.
  [[nodiscard]] QString OwnPath(const QString &path) const;
  [[nodiscard]] bool IsBeingWritten(const QString &path) const;
  [[nodiscard]] TItem *Item(int row) const;
  [[nodiscard]] TItem *ItemOf(const QString &id) const;
  [[nodiscard]] int RowOf(const TItem &item) const;
  [[nodiscard]] QString StatusText(const TItem &item) const;

  QWebEngineProfile &m_profile;
  const TLanguage &m_language;
  TRegistryStore &m_store;
  TSaveQuestion m_saveQuestion;
  std::function<bool(const QUrl &)> m_opener;
  std::unique_ptr<TKeptDownloads> m_kept;
  std::map<quint64, std::unique_ptr<TFileCopy>> m_moves;
  quint64 m_lastMove = 0;
  QString m_asking;  // the id of the one that the user is asked about, while he is
  std::vector<std::unique_ptr<TItem>> m_items;
  QTimer m_tick;
  int m_activeCount = 0;
  bool m_looksForNext = false;  // StartNext is about to be called
};
