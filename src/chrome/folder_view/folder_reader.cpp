#include "chrome/folder_view/folder_reader.h"

#include <algorithm>

#include "platform/folder_entries.h"

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

void TFolderReader::ReadParts(const QString &file, quint64 known, TFileParts::TRead read) {
  const auto look = [=, this] {
    const quint64 stamp = FolderEntries::Stamp(file);
    if (stamp == known) {
      QMetaObject::invokeMethod(
          this, [=, this] { Q_EMIT Unchanged(file); }, Qt::QueuedConnection);
      return;
    }
    const QList<TFilePart> parts = read(file);
    QMetaObject::invokeMethod(
        this, [=, this] { Q_EMIT PartsRead(file, parts, stamp); }, Qt::QueuedConnection);
  };
  m_pool.start(look, FolderPriority);
}

void TFolderReader::ReadTarget(const TFavorite &file) {
  const auto read = [file, this] {
    const QString target = FavoritesFolder::Target(file);
    QMetaObject::invokeMethod(
        this, [=, this] { Q_EMIT TargetRead(file.path, target); }, Qt::QueuedConnection);
  };
  m_pool.start(read, TargetPriority);
}
