#include "platform/folder_entries.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <QFileDevice>
#include <QUuid>

#include "platform/native_path.h"

namespace {

constexpr size_t Piece = 128 * 1024;
constexpr mode_t NewFile = 0666;  // less what the user's mask takes

// An open file, for as long as the object lives.
class TDescriptor final {
 public:
  explicit TDescriptor(int number) : m_number(number) {}
  ~TDescriptor() { Close(); }
  TDescriptor(const TDescriptor &) = delete;
  TDescriptor &operator=(const TDescriptor &) = delete;
  [[nodiscard]] operator int() const { return m_number; }
  // Some disks tell only now that they have refused something.
  int Close() { return m_number < 0 || ::close(std::exchange(m_number, -1)) == 0 ? 0 : errno; }

 private:
  int m_number;
};

int Result(int code) {
  return code == 0 ? 0 : errno;
}

void Tell(QString *error, int code) {
  if (error != nullptr) *error = qt_error_string(code);
}

int WriteAll(int file, const char *bytes, size_t size) {
  while (size > 0) {
    const ssize_t written = ::write(file, bytes, size);
    if (written < 0 && errno != EINTR) return errno;
    if (written <= 0) continue;
    bytes += written;
    size -= size_t(written);
  }
  return 0;
}

// Begins a file; waits for no pipe that another has put there.
int WriteNew(const QByteArray &path, QByteArrayView bytes, mode_t mode, bool toDisk) {
  TDescriptor file(::open(path.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
  if (file < 0) return errno;
  int code = WriteAll(file, bytes.data(), size_t(bytes.size()));
  if (code == 0 && toDisk) code = Result(::fdatasync(file));
  return code != 0 ? code : file.Close();
}

QByteArray HiddenBeside(const QByteArray &path) {
  return path.left(path.lastIndexOf('/') + 1) + ".zv-" + QUuid::createUuid().toByteArray(QUuid::Id128);
}

int RemoveFolder(const QByteArray &path);

int RemoveEntry(const QByteArray &path) {
  struct stat status {};
  if (::lstat(path.constData(), &status) != 0) return errno;
  return S_ISDIR(status.st_mode) ? RemoveFolder(path) : Result(::unlink(path.constData()));
}

// Paths end long before the stack does.
int RemoveFolder(const QByteArray &path) {
  QString error;
  const auto entries = FolderEntries::List(NativePath::ToText(path), &error, FolderEntries::THidden::Listed);
  int code = 0;
  if (entries) {
    for (const FolderEntries::TEntry &entry : *entries) {
      const int failure = RemoveEntry(path + '/' + NativePath::ToBytes(entry.name));
      if (code == 0) code = failure;
    }
  }
  return ::rmdir(path.constData()) == 0 ? 0 : code != 0 ? code : errno;
}

}  // namespace

namespace FolderEntries {

std::optional<QList<TEntry>> List(const QString &folder, QString *error, THidden hidden) {
  const std::unique_ptr<DIR, int (*)(DIR *)> open(::opendir(NativePath::ToBytes(folder).constData()), ::closedir);
  if (open == nullptr) {
    Tell(error, errno);
    return std::nullopt;
  }
  QList<TEntry> entries;
  for (;;) {
    errno = 0;
    const dirent *entry = ::readdir(open.get());
    if (entry == nullptr) break;
    const QByteArrayView name(entry->d_name);
    if (name == "." || name == ".." || (hidden == THidden::LeftOut && name.startsWith('.'))) continue;
    bool isFolder = entry->d_type == DT_DIR;
    if (entry->d_type == DT_LNK || entry->d_type == DT_UNKNOWN) {
      struct stat status {};
      isFolder = ::fstatat(::dirfd(open.get()), entry->d_name, &status, 0) == 0 && S_ISDIR(status.st_mode);
    }
    entries.append({NativePath::ToText(name), isFolder});
  }
  if (errno == 0) return entries;
  Tell(error, errno);
  return std::nullopt;
}

std::optional<QByteArray> Read(const QString &file, qint64 most, QString *error) {
  const TDescriptor open(::open(NativePath::ToBytes(file).constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  struct stat status {};
  if (open < 0 || ::fstat(open, &status) != 0) {
    Tell(error, errno);
    return std::nullopt;
  }
  if (!S_ISREG(status.st_mode)) {
    Tell(error, S_ISDIR(status.st_mode) ? EISDIR : EINVAL);
    return std::nullopt;
  }
  // No more room than the file needs; what says that it is empty may be none the less.
  const qint64 expected = status.st_size > 0 ? status.st_size : qint64(Piece);
  QByteArray bytes(qsizetype(std::min(most, expected)), Qt::Uninitialized);
  qsizetype size = 0;
  while (size < bytes.size()) {
    const ssize_t count = ::read(open, bytes.data() + size, size_t(bytes.size() - size));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) {
      Tell(error, errno);
      return std::nullopt;
    }
    if (count == 0) break;
    size += count;
  }
  bytes.truncate(size);
  return bytes;
}

quint64 Stamp(const QString &folder) {
  struct stat status {};
  if (::stat(NativePath::ToBytes(folder).constData(), &status) != 0) return 0;
  const size_t hash = qHashMulti(0, quint64(status.st_dev), quint64(status.st_ino), qint64(status.st_mtim.tv_sec),
                                 qint64(status.st_mtim.tv_nsec));
  return hash == 0 ? 1 : quint64(hash);
}

QByteArray Identity(const QString &path) {
  struct stat status {};
  if (::stat(NativePath::ToBytes(path).constData(), &status) != 0) return {};
  return QByteArray::number(quint64(status.st_dev)) + ':' + QByteArray::number(quint64(status.st_ino));
}

bool Exists(const QString &path) {
  struct stat status {};
  return ::lstat(NativePath::ToBytes(path).constData(), &status) == 0;
}

bool IsFolder(const QString &path) {
  struct stat status {};
  return ::stat(NativePath::ToBytes(path).constData(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool IsExecutable(const QString &path) {
  const QByteArray bytes = NativePath::ToBytes(path);
  struct stat status {};
  return ::stat(bytes.constData(), &status) == 0 && S_ISREG(status.st_mode) && ::access(bytes.constData(), X_OK) == 0;
}

bool IsLink(const QString &path) {
  struct stat status {};
  return ::lstat(NativePath::ToBytes(path).constData(), &status) == 0 && S_ISLNK(status.st_mode);
}

qint64 Size(const QString &path) {
  struct stat status {};
  return ::lstat(NativePath::ToBytes(path).constData(), &status) == 0 && S_ISREG(status.st_mode) ? status.st_size : 0;
}

int MoveToFree(const QString &from, const QString &to) {
  const QByteArray source = NativePath::ToBytes(from);
  const QByteArray target = NativePath::ToBytes(to);
  const int code = Result(::renameat2(AT_FDCWD, source.constData(), AT_FDCWD, target.constData(), RENAME_NOREPLACE));
  if (code != EINVAL && code != ENOSYS) return code;
  // Not every file system can. A moment is left in which another program may take the name of a folder.
  struct stat status {};
  if (::lstat(source.constData(), &status) != 0) return errno;
  if (!S_ISDIR(status.st_mode) && ::link(source.constData(), target.constData()) == 0) {
    return Result(::unlink(source.constData()));
  }
  if (::lstat(target.constData(), &status) == 0) return EEXIST;
  return Result(::rename(source.constData(), target.constData()));
}

int MakeFolder(const QString &path) {
  return Result(::mkdir(NativePath::ToBytes(path).constData(), S_IRWXU));
}

int Create(const QString &path, QByteArrayView bytes) {
  // A name that is taken is told before anything is written.
  if (Exists(path)) return EEXIST;
  const QByteArray hidden = HiddenBeside(NativePath::ToBytes(path));
  int code = WriteNew(hidden, bytes, NewFile, true);
  if (code == 0) code = MoveToFree(NativePath::ToText(hidden), path);
  if (code != 0) ::unlink(hidden.constData());
  return code;
}

int CreateUnseen(const QString &path, QByteArrayView bytes) {
  return WriteNew(NativePath::ToBytes(path), bytes, NewFile, false);
}

int Replace(const QString &path, QByteArrayView bytes) {
  QByteArray target = NativePath::ToBytes(path);
  struct stat status {};
  mode_t mode = NewFile;
  const bool isThere = ::stat(target.constData(), &status) == 0;
  if (isThere) {
    if (!S_ISREG(status.st_mode)) return S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
    mode = status.st_mode & (S_IRWXU | S_IRWXG | S_IRWXO);
    const std::unique_ptr<char, void (*)(void *)> real(::realpath(target.constData(), nullptr), ::free);
    if (real == nullptr) return errno;
    target = real.get();
  }
  const QByteArray hidden = HiddenBeside(target);
  int code = WriteNew(hidden, bytes, mode, true);
  // The mask does not take from what the user has given.
  if (code == 0 && isThere) code = Result(::chmod(hidden.constData(), mode));
  if (code == 0) code = Result(::rename(hidden.constData(), target.constData()));
  if (code != 0) ::unlink(hidden.constData());
  return code;
}

int Copy(const QString &from, const QString &to, const std::function<bool()> &mayGoOn) {
  const QByteArray source = NativePath::ToBytes(from);
  const QByteArray target = NativePath::ToBytes(to);
  struct stat status {};
  if (::lstat(source.constData(), &status) != 0) return errno;
  if (S_ISLNK(status.st_mode)) {
    std::array<char, PATH_MAX> place{};
    if (::readlink(source.constData(), place.data(), place.size() - 1) < 0) return errno;
    return Result(::symlink(place.data(), target.constData()));
  }
  const TDescriptor in(::open(source.constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  if (in < 0 || ::fstat(in, &status) != 0) return errno;
  if (!S_ISREG(status.st_mode)) return S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
  TDescriptor out(::open(target.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, status.st_mode & 0777));
  if (out < 0) return errno;
  const auto piece = std::make_unique<std::array<char, Piece>>();
  int code = 0;
  for (;;) {
    const ssize_t count = ::read(in, piece->data(), piece->size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) code = errno;
    if (count > 0) code = WriteAll(out, piece->data(), size_t(count));
    if (code == 0 && mayGoOn && !mayGoOn()) code = ECANCELED;
    if (count <= 0 || code != 0) break;
  }
  const int end = out.Close();
  if (code == 0) code = end;
  if (code != 0) ::unlink(target.constData());
  return code;
}

int Remove(const QString &path) {
  return RemoveEntry(NativePath::ToBytes(path));
}

void SyncDisk(const QString &folder) {
  const TDescriptor open(::open(NativePath::ToBytes(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (open >= 0) ::syncfs(open);
}

THold::THold(const QString &folder)
    : m_descriptor(::open(NativePath::ToBytes(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
  if (m_descriptor >= 0 && ::flock(m_descriptor, LOCK_EX | LOCK_NB) != 0) {
    ::close(std::exchange(m_descriptor, -1));
  }
}

THold::~THold() {
  if (m_descriptor >= 0) ::close(m_descriptor);
}

}  // namespace FolderEntries
