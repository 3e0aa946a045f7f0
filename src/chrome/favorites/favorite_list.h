#pragma once

#include <QListWidget>
#include <QTreeWidget>

#include "favorites/favorites_folder.h"

// The favorites of one folder. They are dragged among themselves, onto folders, and to other programs.
class TFavoriteList final : public QListWidget {
  Q_OBJECT

 public:
  explicit TFavoriteList(QWidget *parent = nullptr);

  // Those that were selected and are still there stay so.
  void Show(const TFavorites &favorites, const QIcon &folder, const QIcon &page);
  [[nodiscard]] const TFavorites &Shown() const { return m_shown; }
  [[nodiscard]] QStringList SelectedPaths() const;
  void Select(const QStringList &paths);
  // The one that the keyboard is on; one without a path when there is none.
  [[nodiscard]] TFavorite Current() const;
  // A name is being typed.
  [[nodiscard]] bool IsEditing() const { return state() == EditingState; }

 Q_SIGNALS:
  // `folder` is empty for the one that is shown, in which they are to stand before `position`.
  void Dropped(const QStringList &paths, const QString &folder, int position, bool isCopied);
  void Renamed(const TFavorite &favorite, const QString &caption);

 protected:
  QMimeData *mimeData(const QList<QListWidgetItem *> &items) const override;
  void dragEnterEvent(QDragEnterEvent *event) override;
  void dragMoveEvent(QDragMoveEvent *event) override;
  void dropEvent(QDropEvent *event) override;

 private:
  TFavorites m_shown;
};

// The folders of favorites, each read when it is opened.
class TFolderTree final : public QTreeWidget {
  Q_OBJECT

 public:
  explicit TFolderTree(QWidget *parent = nullptr);

  void SetRoot(const QString &caption, const QString &path);
  // Opens the tree down to that folder, or as far towards it as it goes, and makes it the current one.
  void ShowFolder(const QString &path);
  // Reads again what is open.
  void Refresh();
  [[nodiscard]] QString Current() const;

 Q_SIGNALS:
  void Dropped(const QStringList &paths, const QString &folder, int position, bool isCopied);

 protected:
  void dragEnterEvent(QDragEnterEvent *event) override;
  void dragMoveEvent(QDragMoveEvent *event) override;
  void dropEvent(QDropEvent *event) override;

 private:
  void AddNode(QTreeWidgetItem *parent, const QString &caption, const QString &path);
  void FillNode(QTreeWidgetItem *node);
};
