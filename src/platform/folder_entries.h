#pragma once

#include <optional>
#include <QList>
#include <QString>
#include <QStringList>

// Folders and files with any name that the file system takes, as NativePath writes it. Links are followed where
// nothing else is said.
namespace FolderEntries {

struct TEntry {
  QString name;
  bool isFolder = false;  // or a link to one
};

// What stands in the folder, without names that begin with ".", in the order of the file system. Asks the disk about
// links only, not about each file. std::nullopt with the system's reason where it cannot be read.
[[nodiscard]] std::optional<QList<TEntry>> List(const QString &folder, QString *error = nullptr);

// The first `most` bytes of a regular file; std::nullopt with the reason for everything else. Waits for no pipe.
[[nodiscard]] std::optional<QByteArray> Read(const QString &file, qint64 most, QString *error = nullptr);

// Tells one state of a folder from another: changes whenever an entry is added, removed or renamed. 0 where there is
// no such folder.
[[nodiscard]] quint64 Stamp(const QString &folder);

// The same for every path that leads to one folder or file, by links or not; empty where there is none.
[[nodiscard]] QByteArray Identity(const QString &path);

// True for everything that has this name, a link to nowhere too.
[[nodiscard]] bool Exists(const QString &path);
[[nodiscard]] bool IsFolder(const QString &path);
[[nodiscard]] bool IsLink(const QString &path);

// Gives `from` the name `to`, on the same disk, unless something has that name already. 0, or the system's number of
// the reason: EEXIST, EXDEV, ...
[[nodiscard]] int MoveToFree(const QString &from, const QString &to);

// Makes the folder; 0, or the reason. Its parent must be there.
[[nodiscard]] int MakeFolder(const QString &path);

// Brings all that was written to the disk of this folder there.
void SyncDisk(const QString &folder);

// A hold on a folder, for as long as the object lives or the process does.
class THold final {
 public:
  // Takes it if nobody has it.
  explicit THold(const QString &folder);
  ~THold();
  THold(const THold &) = delete;
  THold &operator=(const THold &) = delete;
  [[nodiscard]] bool IsHeld() const { return m_descriptor >= 0; }

 private:
  int m_descriptor = -1;
};

}  // namespace FolderEntries
