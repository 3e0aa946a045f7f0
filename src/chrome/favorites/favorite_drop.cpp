#include "chrome/favorites/favorite_drop.h"

#include <QDir>
#include <QDropEvent>
#include <QMimeData>
#include <QWidget>

#include "browser/strip/tab_bar_view.h"
#include "chrome/favorites/favorite_launcher.h"
#include "favorites/favorite_drag.h"
#include "favorites/favorites_folder.h"
#include "favorites/shortcut_file.h"
#include "platform/folder_entries.h"

namespace {

constexpr qsizetype LongestText = 8192;  // characters; a longer one is prose, not the path of a file

bool IsShortcut(const QString &path) {
  return ShortcutFile::KindOf(path) != ShortcutFile::TKind::None && FolderEntries::Exists(path) &&
         !FolderEntries::IsFolder(path);
}

}  // namespace

TFavoriteDrop::TFavoriteDrop(TFavoriteLauncher &launcher, std::function<QString()> root, QObject *parent)
    : QObject(parent), m_launcher(launcher), m_root(std::move(root)) {
  setObjectName(QStringLiteral("ouDropFavorite"));
}

void TFavoriteDrop::Watch(QWidget *widget) {
  widget->setAcceptDrops(true);
  widget->installEventFilter(this);
}

void TFavoriteDrop::WatchPage(QWidget *page) {
  if (page == nullptr || m_pages.contains(page)) return;
  m_pages.insert(page);
  page->installEventFilter(this);
  connect(page, &QObject::destroyed, this, [this](QObject *gone) { m_pages.remove(gone); });
  for (QWidget *inner : page->findChildren<QWidget *>()) WatchPage(inner);
}

QStringList TFavoriteDrop::PathsIn(const QMimeData &data) const {
  if (FavoriteDrag::AreFavorites(data)) return FavoriteDrag::PathsIn(data);
  QStringList paths;
  if (data.hasUrls()) {
    // Another folder from elsewhere is one to look into, and what else it holds is not lost in a heap of tabs.
    const QString root = m_root() + u'/';
    for (const QString &path : FavoriteDrag::PathsIn(data)) {
      const bool isOurs = QString(QDir::cleanPath(path) + u'/').startsWith(root) && FolderEntries::IsFolder(path);
      if (isOurs || IsShortcut(path)) paths.append(path);
    }
    return paths.size() == data.urls().size() ? paths : QStringList();
  }
  const QString text = data.text().left(LongestText).trimmed();
  if (QDir::isAbsolutePath(text) && (FolderEntries::IsFolder(text) || IsShortcut(text))) paths.append(text);
  return paths;
}

void TFavoriteDrop::Open(const QStringList &paths) {
  QStringList addresses;
  for (const QString &path : paths) {
    if (FolderEntries::IsFolder(path)) {
      addresses += FavoritesFolder::ShortcutAddresses(path);
    } else {
      const QString address = ShortcutFile::Read(path);
      // Scripts only run when the user chooses them.
      if (!address.isEmpty() && !ShortcutFile::IsScript(address)) addresses.append(address);
    }
  }
  // Not now: there may be a question, and the drag is not over.
  QMetaObject::invokeMethod(
      this, [this, addresses] { m_launcher.OpenInNewTabs(addresses); }, Qt::QueuedConnection);
}

bool TFavoriteDrop::eventFilter(QObject *watched, QEvent *event) {
  switch (event->type()) {
    case QEvent::ChildAdded:
      if (auto *inner = qobject_cast<QWidget *>(static_cast<QChildEvent *>(event)->child());
          inner != nullptr && m_pages.contains(watched)) {
        WatchPage(inner);
      }
      break;
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop: {
      auto *drop = static_cast<QDropEvent *>(event);
      // A tab that has been dragged out and let go over its page is not to load it again.
      if (m_pages.contains(watched) && qobject_cast<TTabBarView *>(drop->source()) != nullptr) {
        drop->ignore();
        return true;
      }
      if (m_pages.contains(watched) && !FavoriteDrag::AreFavorites(*drop->mimeData())) break;
      // Looks at the disk, so not at each move.
      if (event->type() == QEvent::DragEnter) m_dragged = PathsIn(*drop->mimeData());
      if (m_dragged.isEmpty()) break;
      // The favorites stay where they are.
      drop->setDropAction(drop->possibleActions().testFlag(Qt::CopyAction) ? Qt::CopyAction : Qt::LinkAction);
      drop->accept();
      if (event->type() == QEvent::Drop) Open(m_dragged);
      return true;
    }
    default:
      break;
  }
  return QObject::eventFilter(watched, event);
}
