#include "favorites/favorites_finder.h"

#include <algorithm>
#include <functional>
#include <QElapsedTimer>
#include <QSet>
#include <utility>
#include <vector>

#include "favorites/shortcut_file.h"
#include "platform/folder_entries.h"
#include "platform/native_path.h"

namespace {

// Milliseconds. The first piece comes at once, the others later and later: for a list each costs by itself.
constexpr qint64 FirstPause = 30;  // before the second
constexpr qint64 LongestPause = 500;
constexpr qsizetype EndingLength = 4;  // ".url"

// One search, on its thread. Folders that are open stand in a list, so that no nesting can exhaust the stack.
class TWalk final {
 public:
  using THand = std::function<void(const TFoundFavorites &found, bool isLast)>;

  TWalk(const QString &text, const std::atomic_bool &isToEnd, THand hand)
      : m_text(text), m_isToEnd(isToEnd), m_hand(std::move(hand)) {}

  void Through(const QString &root) {
    m_clock.start();
    Enter(root);
    while (!m_open.empty() && !m_isToEnd) {
      TOpen &folder = m_open.back();
      if (folder.next < folder.folders.size()) {
        Enter(folder.path + u'/' + folder.folders.at(folder.next++));
      } else {
        LookAtFiles(folder);
        m_open.pop_back();
      }
    }
    m_hand(m_found, true);
  }

 private:
  struct TOpen {
    QString path{};
    QStringList folders{};
    qsizetype next = 0;
    QStringList files{};
  };

  void Enter(const QString &path) {
    const QByteArray identity = FolderEntries::Identity(path);
    if (identity.isEmpty() || m_seen.contains(identity)) return;
    m_seen.insert(identity);
    TOpen folder{path};
    const auto entries = FolderEntries::List(path, nullptr, FolderEntries::THidden::Listed);
    for (const FolderEntries::TEntry &entry : entries.value_or(QList<FolderEntries::TEntry>())) {
      if (entry.isFolder && !entry.name.startsWith(u'.')) folder.folders.append(entry.name);
      if (!entry.isFolder && ShortcutFile::KindOf(entry.name) == ShortcutFile::TKind::Url) {
        folder.files.append(entry.name);
      }
    }
    m_open.push_back(std::move(folder));
  }

  void LookAtFiles(const TOpen &folder) {
    for (const QString &file : folder.files) {
      if (m_isToEnd) return;
      const QString path = folder.path + u'/' + file;
      const QString address = ShortcutFile::Read(path);
      if (TFavoritesFinder::IsMatch(NativePath::Shown(file.chopped(EndingLength)), address, m_text)) {
        m_found.append({{FavoritesFolder::CaptionOf(path, false), path, false}, address});
      }
      if (m_found.isEmpty() || (m_pause > 0 && !m_clock.hasExpired(m_pause))) continue;
      m_hand(std::exchange(m_found, {}), false);
      m_clock.start();
      m_pause = std::clamp(m_pause * 2, FirstPause, LongestPause);
    }
  }

  const QString m_text;
  const std::atomic_bool &m_isToEnd;
  const THand m_hand;
  std::vector<TOpen> m_open;
  QSet<QByteArray> m_seen;
  TFoundFavorites m_found;  // and not handed over yet
  QElapsedTimer m_clock;
  qint64 m_pause = 0;
};

}  // namespace

TFavoritesFinder::TFavoritesFinder(QObject *parent) : QObject(parent) {
  m_pool.setMaxThreadCount(1);
}

TFavoritesFinder::~TFavoritesFinder() {
  Cancel();
  m_pool.waitForDone();
}

bool TFavoritesFinder::IsMatch(const QString &name, const QString &address, const QString &text) {
  const QString upper = text.toUpper();
  return name.toUpper().contains(upper) || address.toUpper().contains(upper);
}

void TFavoritesFinder::Find(const QString &folder, const QString &text) {
  Cancel();
  m_run = std::make_shared<std::atomic_bool>(false);
  m_pool.start([this, folder, text, run = m_run] {
    const auto hand = [this, &run](const TFoundFavorites &found, bool isLast) {
      QMetaObject::invokeMethod(
          this, [this, run, found, isLast] { Take(run, found, isLast); }, Qt::QueuedConnection);
    };
    TWalk(text, *run, hand).Through(folder);
  });
}

void TFavoritesFinder::Cancel() {
  if (m_run != nullptr) *m_run = true;
  m_run.reset();
}

void TFavoritesFinder::Take(const TRun &run, const TFoundFavorites &found, bool isLast) {
  if (run != m_run) return;
  if (!found.isEmpty()) Q_EMIT Found(found);
  // Whoever was told may have begun something else.
  if (run != m_run || !isLast) return;
  m_run.reset();
  Q_EMIT Finished();
}
