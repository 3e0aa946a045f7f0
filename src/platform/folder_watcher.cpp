#include "platform/folder_watcher.h"

#include <sys/stat.h>
#include <functional>
#include <optional>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QHash>
#include <QSet>
#include <QTimer>
#include <utility>

namespace {

// Tells one folder from another that has taken its name.
using TFolderId = std::pair<quint64, quint64>;
using TFolders = QHash<QString, TFolderId>;

std::optional<TFolderId> IdOf(const QString &path) {
  struct stat status {};
  if (::stat(QFile::encodeName(path).constData(), &status) != 0) return std::nullopt;
  return TFolderId(status.st_dev, status.st_ino);
}

void Add(TFolders &folders, const QString &path) {
  if (const auto id = IdOf(path)) folders.insert(path, *id);
}

QString NearestExisting(QString path) {
  while (!QFileInfo(path).isDir()) {
    const QString parent = QFileInfo(path).path();
    if (parent == path) break;
    path = parent;
  }
  return path;
}

}  // namespace

// The part that lives in the thread.
class TFolderWatch final : public QObject {
 public:
  explicit TFolderWatch(std::function<void(int)> tell) : m_tell(std::move(tell)) {
    m_settle.setSingleShot(true);
    m_settle.setInterval(TFolderWatcher::Settle);
    connect(&m_settle, &QTimer::timeout, this, [this] { Scan(); });
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, [this](const QString &path) {
      // Its neighbours are nobody's business.
      if (path == m_above && m_known.value(m_root) == IdOf(m_root).value_or(TFolderId())) return;
      // Not started anew while it runs, so that steady changes do not put the news off for ever.
      if (!m_settle.isActive()) m_settle.start();
    });
  }

  void Watch(const QString &folder, int number) {
    if (!m_known.isEmpty()) m_watcher.removePaths(m_known.keys());
    m_known.clear();
    m_settle.stop();
    m_root = folder;
    m_above = QFileInfo(folder).path();
    m_number = number;
    m_isThere = true;
    if (!folder.isEmpty()) Scan();
  }

 private:
  void Scan() {
    const bool wasThere = std::exchange(m_isThere, QFileInfo(m_root).isDir());
    // What was made inside a new folder before it was watched shows in the next round.
    while (WatchFolders()) continue;
    if (wasThere || m_isThere) m_tell(m_number);
  }

  // Brings the watches in line with the folders that there are; true when new ones were added.
  bool WatchFolders() {
    const TFolders now = Folders();
    // One that is removed is watched no more, also when another has got its name and its number since.
    const QStringList directories = m_watcher.directories();
    const QSet<QString> watched(directories.begin(), directories.end());
    QStringList gone;
    for (auto known = m_known.cbegin(); known != m_known.cend(); ++known) {
      const auto found = now.constFind(known.key());
      if (found == now.cend() || *found != *known || !watched.contains(known.key())) gone.append(known.key());
    }
    for (const QString &path : std::as_const(gone)) m_known.remove(path);
    if (!gone.isEmpty()) m_watcher.removePaths(gone);
    bool isAdded = false;
    for (auto folder = now.cbegin(); folder != now.cend(); ++folder) {
      if (m_known.contains(folder.key()) || !m_watcher.addPath(folder.key())) continue;
      m_known.insert(folder.key(), *folder);
      isAdded = true;
    }
    return isAdded && !thread()->isInterruptionRequested();
  }

  [[nodiscard]] TFolders Folders() const {
    TFolders folders;
    if (!m_isThere) {
      Add(folders, NearestExisting(m_root));
      return folders;
    }
    // That the folder itself is renamed shows only in the one above.
    Add(folders, m_above);
    Add(folders, m_root);
    QDirIterator walk(m_root, QDir::Dirs | QDir::NoDotAndDotDot | QDir::Hidden | QDir::NoSymLinks,
                      QDirIterator::Subdirectories);
    while (walk.hasNext() && folders.size() < TFolderWatcher::MostFolders && !thread()->isInterruptionRequested()) {
      Add(folders, walk.next());
    }
    return folders;
  }

  std::function<void(int)> m_tell;
  QFileSystemWatcher m_watcher{this};
  QTimer m_settle{this};
  TFolders m_known;  // what is watched
  QString m_root;
  QString m_above;  // the folder that holds it
  int m_number = 0;
  bool m_isThere = false;
};

TFolderWatcher::TFolderWatcher(QObject *parent) : QObject(parent) {}

TFolderWatcher::~TFolderWatcher() {
  m_thread.requestInterruption();
  m_thread.quit();
  m_thread.wait();
}

void TFolderWatcher::Watch(const QString &folder) {
  m_folder = folder.isEmpty() ? QString() : QDir::cleanPath(QFileInfo(folder).absoluteFilePath());
  ++m_number;
  if (m_watch == nullptr) {
    if (m_folder.isEmpty()) return;
    m_watch = new TFolderWatch([this](int number) {
      QMetaObject::invokeMethod(
          this, [this, number] { Pass(number); }, Qt::QueuedConnection);
    });
    m_watch->moveToThread(&m_thread);
    connect(&m_thread, &QThread::finished, m_watch, &QObject::deleteLater);
    m_thread.setObjectName(QStringLiteral("folder watcher"));
    m_thread.start(QThread::LowPriority);
  }
  QMetaObject::invokeMethod(
      m_watch, [watch = m_watch, path = m_folder, number = m_number] { watch->Watch(path, number); },
      Qt::QueuedConnection);
}

void TFolderWatcher::Stop() {
  Watch(QString());
}

void TFolderWatcher::Pass(int number) {
  if (number == m_number && !m_folder.isEmpty()) Q_EMIT Changed();
}
