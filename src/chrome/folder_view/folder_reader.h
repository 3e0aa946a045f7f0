#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QThreadPool>

#include "chrome/folder_view/file_parts.h"
#include "favorites/favorites_folder.h"

// Reads folders and files one after the other on a thread of its own, so that a slow disk keeps no window waiting. Each
// question is answered once, in order.
class TFolderReader final : public QObject {
  Q_OBJECT

 public:
  // No stamp of a folder (see FavoritesFolder::Stamp).
  static constexpr quint64 NoStamp = ~quint64(0);

  explicit TFolderReader(QObject *parent = nullptr);
  // Waits for the one that is being read.
  ~TFolderReader() override;

  // FolderRead, or Unchanged where the folder still has the stamp `known`. Of files only those with these endings; of
  // entries only folders with `foldersOnly`.
  void Read(const QString &folder, quint64 known, const QStringList &endings, bool foldersOnly);
  // PartsRead, or Unchanged where the file still has the stamp `known`.
  void ReadParts(const QString &file, quint64 known, TFileParts::TRead read);
  // TargetRead, with what FavoritesFolder::Target says.
  void ReadTarget(const TFavorite &file);

 Q_SIGNALS:
  void FolderRead(const QString &folder, const TFavorites &favorites, quint64 stamp);
  void PartsRead(const QString &file, const QList<TFilePart> &parts, quint64 stamp);
  void Unchanged(const QString &path);
  void TargetRead(const QString &path, const QString &target);

 private:
  QThreadPool m_pool;
};
