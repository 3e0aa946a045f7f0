#pragma once

#include <memory>
#include <optional>
#include <QDateTime>
#include <QElapsedTimer>
#include <QPointer>
#include <QUrl>
#include <QUuid>
#include <QWebEngineDownloadRequest>
#include <QWebEnginePage>
#include <QWidget>

#include "browser/downloads/download_list.h"
#include "browser/downloads/kept_downloads.h"

// One line of the list of downloads.
struct TDownloadList::TItem {
  QUrl address;
  QString path;  // empty as long as it was not asked for
  TDownloadState state = TDownloadState::Running;
  qint64 received = 0;
  qint64 total = -1;
  QString failure;
  QDateTime when = QDateTime::currentDateTime();  // it was asked for
  bool isPage = false;                            // a page that was saved
  QPointer<QWebEngineDownloadRequest> request;
  QString suggestedName;                 // the server's own, unchecked
  const TPageDownloads *asks = nullptr;  // whose answer it waits for; no more than a name
  QPointer<QWidget> window;              // that its page is in
  bool waitsForPlace = false;            // until the user has said where it goes
  bool isRetry = false;                  // it stood in the list before he was asked
  bool isToldFinished = false;           // to those who follow
  bool mayReplace = false;               // what is there; the dialog has asked
  quint64 move = 0;                      // the one that brings it to its place, on another disk; 0 for none
  QString moveTo;                        // where that one writes
  QString writtenTo;                     // where it is until it has its place, when that is not the place itself
  // Asks for the file again; alive until the engine has come back with a request. That request is known by its name
  // alone: its address may be another one after redirections, and it belongs to no page.
  std::unique_ptr<QWebEnginePage> retryPage;
  QString retryToken;
  QElapsedTimer retrySince;

  QString id = QUuid::createUuid().toString(QUuid::WithoutBraces);  // by which it is kept
  // What of it was written last.
  std::optional<TDownloadState> keptState;
  QString keptPath;
  QString remains;  // where what an earlier run has got of it lies

  double speed = 0;  // bytes per second, smoothed
  qint64 sampleReceived = 0;
  QElapsedTimer sampleSince;

  void MeasureSpeed();
  // It was finished, and its file has been moved or deleted since.
  [[nodiscard]] bool IsGone() const;
  // All of it is there, but not in its place: the engine gives the file this name at its end.
  [[nodiscard]] bool IsUnplaced() const;
  [[nodiscard]] QString TimeText() const;

  [[nodiscard]] TKeptDownload ToKeep() const;
  void Restore(const TKeptDownload &kept);
};
