#pragma once

#include <array>
#include <functional>
#include <QPointer>
#include <QTimer>
#include <QTreeView>

#include "chrome/folder_view/dropped_favorites.h"
#include "chrome/folder_view/folder_model.h"
#include "ui/one_branch_open.h"

class QMenu;
class QMimeData;
class TFolderEditor;
class TFolderKind;
class TLanguage;
enum class TOpenPlace;

// What can be done in a view, by key and from its menu.
enum class TFolderAction {
  Open,
  OpenAll,
  OpenInNewTab,
  OpenInBackground,
  Cut,
  Copy,
  Paste,
  Rename,
  Delete,
  NewFolder,
  Undo,
  SortByName,
  MoveUp,
  MoveDown,
  CopyAddress,
  Properties,
  Count
};

// A folder on the disk as a tree, or as the list of what is in it. Files are opened, renamed in place, moved, copied,
// put in order and thrown away; all is undone by the editor, which views may share. What others do on the disk shows
// after Refresh, and what is selected, open and to be seen stays so.
//
// Where files hold parts (TFolderKind::Parts) those are opened by a click, moved, copied and taken out in the same
// ways. They and files are not moved together.
class TFolderView final : public QTreeView {
  Q_OBJECT

 public:
  enum class TLook {
    Tree,          // what is in the folder, and below
    TreeWithRoot,  // the folder itself, too
    List,          // only what is in it
  };

  // All must outlive this object.
  TFolderView(TFolderKind &kind, TFolderEditor &editor, const TLanguage &language, TLook look,
              TFolderModel::TShow show = TFolderModel::TShow::All, QWidget *parent = nullptr);

  // Shows that folder, from its top.
  void SetRoot(const QString &path, const QString &caption);
  // A click opens, instead of a double click.
  void SetOpensOnClick(bool opens);
  // A folder that the user opens closes those that stood open beside it (see TOneBranchOpen). What opens by itself, as
  // under a drag that rests, closes none: rows are to stay where they are.
  void SetKeepsOneOpen(bool keeps) { m_oneOpen->SetOn(keeps); }
  // Only shows folders to choose from: nothing is changed here, and Enter is the window's.
  void SetReadOnly();
  void Refresh() { m_model.Refresh(); }

  // Opens the tree down to that folder, or as far towards it as it goes, and makes it the current one.
  void Reveal(const QString &folder);
  // The same for a file.
  void RevealFile(const QString &path);
  // Selects these as soon as they are there; the first is the current one.
  void Select(const QStringList &paths);

  // One without a path when there is none.
  [[nodiscard]] TFavorite Current() const;
  // The folder that is current or on its way to be, see Reveal; or the one that the current file lies in.
  [[nodiscard]] QString Folder() const;
  // In their order from top to bottom, without the root.
  [[nodiscard]] TFavorites Selected() const;
  // The same for parts, which are not in Selected.
  [[nodiscard]] QList<TFilePartPlace> SelectedParts() const;
  // The only one that is selected, or the root where it is the current one and nothing else is selected; else one
  // without a path. The current row may be one that was just taken out of what is selected.
  [[nodiscard]] TFavorite Sole() const;
  // What a drag of them carries: the files, and the addresses in them as text. The caller's.
  [[nodiscard]] QMimeData *SelectedData() const;
  // A name is being typed.
  [[nodiscard]] bool IsEditing() const { return state() == EditingState; }

  [[nodiscard]] QAction *Action(TFolderAction action) const { return m_actions[static_cast<size_t>(action)]; }
  // Fills a menu with what can be done with what is selected.
  void FillMenu(QMenu &menu);
  // Has another menu filled instead, of this name.
  void SetMenu(const QString &name, std::function<void(QMenu &)> fill);
  // Enables what fits what is selected; before its actions stand in a menu of others.
  void UpdateActions();
  [[nodiscard]] const TFolderModel &Model() const { return m_model; }

 Q_SIGNALS:
  // Another folder, or file in one, is current.
  void CurrentChanged();
  // A list was to go into that folder.
  void FolderWanted(const QString &path);
  void PropertiesWanted(const TFavorite &favorite);
  // The name of one that is not renamed in place is to be changed.
  void RenameWanted(const TFavorite &favorite);
  // Why something was not done, for the window to show.
  void Told(const QString &text);

 protected:
  bool event(QEvent *event) override;
  void keyPressEvent(QKeyEvent *event) override;
  void mousePressEvent(QMouseEvent *event) override;
  void mouseReleaseEvent(QMouseEvent *event) override;
  void contextMenuEvent(QContextMenuEvent *event) override;
  void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;
  void dataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight, const QList<int> &roles) override;
  void selectionChanged(const QItemSelection &selected, const QItemSelection &deselected) override;
  void startDrag(Qt::DropActions supported) override;
  void dragEnterEvent(QDragEnterEvent *event) override;
  void dragMoveEvent(QDragMoveEvent *event) override;
  void dragLeaveEvent(QDragLeaveEvent *event) override;
  void dropEvent(QDropEvent *event) override;
  void paintEvent(QPaintEvent *event) override;

 private:
  // Where something that is dropped goes: before the row of the folder, or of the file with parts, or, with row -1,
  // just into it. No folder: nowhere.
  struct TDrop {
    QPersistentModelIndex folder{};
    int row = -1;
  };

  // ---- folder_view.cpp: what is shown, and where keys and mouse lead ----
  void MakeActions();
  void FollowReading();
  // The index of the path; what leads there is opened. None as long as it is not read.
  QModelIndex Sought(const QString &path);
  void KeepPlace();
  void ReturnToPlace();
  void ShowMenu(const QPoint &globalPosition);
  void OnClicked(const QModelIndex &index);
  void OnDoubleClicked(const QModelIndex &index);
  [[nodiscard]] QAction *ActionFor(const QKeyEvent &event) const;

  // ---- folder_view_commands.cpp ----
  void Run(TFolderAction action);
  // See TFolderEditor::Do.
  void Do(const std::function<TFavoritesChange()> &change,
          const std::function<void(const TFavoritesChange &)> &then = {});
  void OnDone(const TFavoritesChange &change, const QObject *by);
  void Open(TOpenPlace place);
  void Cut();
  void Copy();
  void Paste();
  void Rename();
  void Delete();
  void NewFolder();
  void MoveBy(int step);
  void CopyAddress();
  // Changes something by what is dropped or pasted, which is refused with a word where it is too much.
  void DoWith(const DroppedFavorites::TDropped &dropped, const std::function<TFavoritesChange()> &change,
              const std::function<void(const TFavoritesChange &)> &then = {});
  [[nodiscard]] QStringList SelectedPaths() const;
  // Of the rows that are selected the first or the last in their folder; none when they are of several folders.
  [[nodiscard]] QModelIndex EdgeOfSelected(bool isLast) const;
  [[nodiscard]] bool CanMoveBy(int step) const;

  // ---- folder_view_drag.cpp ----
  [[nodiscard]] TDrop DropAt(const QPoint &place) const;
  [[nodiscard]] QRect IndicatorOf(const TDrop &drop) const;
  void EndDrag();
  void ScrollAtEdge(const QPoint &place);

  // ---- folder_view_parts.cpp ----
  // Nothing but parts is selected, all of one file where that is asked for.
  [[nodiscard]] bool ArePartsSelected(bool ofOneFile = false) const;
  void OpenParts(TOpenPlace place);
  void Do(const TFilePartsChange &change);
  void MovePartsBy(int step);
  // True where the clipboard was for a file, and has been put into it.
  bool PasteIntoFile(const QMimeData &clip);
  [[nodiscard]] TDrop PartsDropAt(const QPoint &place) const;
  [[nodiscard]] bool IsDropIntoFile(const TDrop &drop) const;
  void DropIntoFile(const TDrop &drop, const QDropEvent &event);

  TFolderKind &m_kind;
  TFolderEditor &m_editor;
  const TLanguage &m_language;
  TLook m_look;
  TFolderModel m_model;
  std::array<QAction *, static_cast<size_t>(TFolderAction::Count)> m_actions{};
  bool m_opensOnClick = false;
  bool m_isReadOnly = false;
  TOneBranchOpen *m_oneOpen;
  QStringList m_sought;           // to be selected when they are there
  bool m_isRevealing = false;     // or, of the only one, as far as it goes
  bool m_isFileRevealed = false;  // it is no folder
  QString m_edited;               // a folder whose name is to be typed when it is there
  QPersistentModelIndex m_top;
  int m_topOffset = 0;
  QPersistentModelIndex m_middlePressed;
  QPointer<QMenu> m_menu;
  QString m_menuName;
  std::function<void(QMenu &)> m_fillMenu;
  // What the drag over the view can be put into.
  bool m_fitsFolders = false;
  bool m_fitsFiles = false;
  TDrop m_drop;
  QTimer m_hover;
  QTimer m_scroll;
  int m_scrollStep = 0;
};
