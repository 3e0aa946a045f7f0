#pragma once

#include <atomic>
#include <memory>
#include <QObject>
#include <QThreadPool>

#include "favorites/favorites_folder.h"

// A favorite that was found.
struct TFoundFavorite {
  TFavorite favorite{};
  QString address{};  // in it; empty where it holds none
};

using TFoundFavorites = QList<TFoundFavorite>;

// Looks through all favorites for a text, on a thread, one search at a time. What is found comes in pieces, the first
// of them at once.
class TFavoritesFinder final : public QObject {
  Q_OBJECT

 public:
  explicit TFavoritesFinder(QObject *parent = nullptr);
  // Ends a search that goes on, and waits for the file that it reads.
  ~TFavoritesFinder() override;

  // Whether the text is in the name (without its ending) or in the address, both in upper case.
  [[nodiscard]] static bool IsMatch(const QString &name, const QString &address, const QString &text);

  // Ends a search that goes on, and begins with this one: of each folder first its sub-folders, but not those whose
  // names begin with ".", in the order of the disk, and then its internet shortcuts (".url"), hidden ones too. Each
  // folder is looked through once, however many links lead to it. One that is not there or cannot be read is empty.
  void Find(const QString &folder, const QString &text);
  // Nothing follows any more, Finished neither.
  void Cancel();
  [[nodiscard]] bool IsSearching() const { return m_run != nullptr; }

 Q_SIGNALS:
  void Found(const TFoundFavorites &found);
  // All has been looked through.
  void Finished();

 private:
  using TRun = std::shared_ptr<std::atomic_bool>;  // true when it is to end

  void Take(const TRun &run, const TFoundFavorites &found, bool isLast);

  TRun m_run;
  QThreadPool m_pool;
};
