#pragma once

#include <functional>
#include <optional>
#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QString>

// Folders and files with any name that the file system takes, as NativePath writes it. Links are followed where
// nothing else is said.
namespace FolderEntries {

struct TEntry {
  QString name;
  bool isFolder = false;  // or a link to one
};

// What stands in the folder, in the order of the file system; names that begin with "." only on demand. Asks the disk
// about links only, not about each file. std::nullopt with the system's reason where it cannot be read.
enum class THidden { LeftOut, Listed };
[[nodiscard]] std::optional<QList<TEntry>> List(const QString &folder, QString *error = nullptr,
                                                THidden hidden = THidden::LeftOut);

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
// A file, or a link to one, that the user may run as a program.
[[nodiscard]] bool IsExecutable(const QString &path);
// Of a regular file, in bytes; 0 for everything else, links too.
[[nodiscard]] qint64 Size(const QString &path);

// The calls below answer 0, or the system's number of the reason (for qt_error_string).

// Gives `from` the name `to`, on the same disk (EXDEV where it is not), unless something has that name: EEXIST.
[[nodiscard]] int MoveToFree(const QString &from, const QString &to);
// Its parent must be there.
[[nodiscard]] int MakeFolder(const QString &path);
// A new file, whole and on the disk or not there at all; EEXIST where something has that name.
[[nodiscard]] int Create(const QString &path, QByteArrayView bytes);
// The same in a folder that nobody knows of yet: the disk gets it when it likes, and a failure may leave a part.
[[nodiscard]] int CreateUnseen(const QString &path, QByteArrayView bytes);
// Puts a file in the place of the one that is there, if any, whole and on the disk or not at all. A link stays one, and
// the file that it leads to is replaced; permissions stay.
[[nodiscard]] int Replace(const QString &path, QByteArrayView bytes);
// A copy of a regular file, or of a link, under a new name. `mayGoOn`, when given, is asked after each piece; ECANCELED
// and no copy when it says no.
[[nodiscard]] int Copy(const QString &from, const QString &to, const std::function<bool()> &mayGoOn = {});
// Takes away a file or link; or a folder with all that is in it, following no link.
[[nodiscard]] int Remove(const QString &path);

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
