#pragma once

#include <functional>
#include <QObject>
#include <QSet>
#include <QStringList>

class QDropEvent;
class QMimeData;
class TFavoriteLauncher;

// Where favorites may be dropped to be opened (ouDropFavorite): the strip of tabs, and the room of a page while there
// is none. A shortcut opens its address in a new tab; a folder of favorites all internet shortcuts that stand right in
// it, each in a tab of its own. Pages give way only to what comes from this window, which they would
// take for files to show. What else is dropped is the affair of whoever it is dropped on.
class TFavoriteDrop final : public QObject {
  Q_OBJECT

 public:
  // `root` is the folder of all favorites. All must outlive this object.
  TFavoriteDrop(TFavoriteLauncher &launcher, std::function<QString()> root, QObject *parent);

  // From now on that widget takes favorites.
  void Watch(QWidget *widget);
  // What shows pages in there, now and later, takes those that come from this window.
  void WatchPage(QWidget *page);

 protected:
  bool eventFilter(QObject *watched, QEvent *event) override;

 private:
  // The files and folders among what is dragged that lead somewhere from here.
  [[nodiscard]] QStringList PathsIn(const QMimeData &data) const;
  void Open(const QStringList &paths);

  TFavoriteLauncher &m_launcher;
  std::function<QString()> m_root;
  QStringList m_dragged;          // what PathsIn has found when it came
  QSet<const QObject *> m_pages;  // and all that is in them
};
