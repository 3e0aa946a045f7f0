#include "chrome/folder_view/folder_reader.h"

#include <algorithm>

namespace {

// In the order in which they are wanted: what the user has opened comes before the pictures of what he sees.
constexpr int FolderPriority = 1;
constexpr int TargetPriority = 0;

bool HasEnding(const QString &path, const QStringList &endings) {
  return endings.isEmpty() || std::ranges::any_of(endings, [&path](const QString &ending) {
           return path.endsWith(ending, Qt::CaseInsensitive);
         });
}

}  // namespace

TFolderReader::TFolderReader(QObject *parent) : QObject(parent) {
  m_pool.setMaxThreadCount(1);
}

TFolderReader::~TFolderReader() {
  m_pool.clear();
  m_pool.waitForDone();
}

void TFolderReader::Read(const QString &folder, quint64 known, const QStringList &endings, bool foldersOnly) {
  const auto read = [=, this] {
    // Before the look at the folder: what changes meanwhile is seen the next time.
    const quint64 stamp = FavoritesFolder::Stamp(folder);
    if (stamp == known) {
      QMetaObject::invokeMethod(
          this, [=, this] { Q_EMIT Unchanged(folder); }, Qt::QueuedConnection);
      return;
    }
    TFavorites favorites = FavoritesFolder::List(folder);
    favorites.removeIf([&](const TFavorite &favorite) {
      return !favorite.isFolder && (foldersOnly || !HasEnding(favorite.path, endings));
    });
    QMetaObject::invokeMethod(
        this, [=, this] { Q_EMIT FolderRead(folder, favorites, stamp); }, Qt::QueuedConnection);
  };
  m_pool.start(read, FolderPriority);
}

void TFolderReader::ReadTarget(const TFavorite &file) {
  const auto read = [file, this] {
    const QString target = FavoritesFolder::Target(file);
    QMetaObject::invokeMethod(
        this, [=, this] { Q_EMIT TargetRead(file.path, target); }, Qt::QueuedConnection);
  };
  m_pool.start(read, TargetPriority);
}
