#pragma once

#include <array>
#include <QPointer>
#include <QWidget>

#include "chrome/side_bar/favorites_results.h"
#include "favorites/favorites_finder.h"

class QAction;
class QKeyEvent;
class QLabel;
class QLineEdit;
class QMenu;
class QToolButton;
class QTreeView;
class TCloseButton;
class TFolderEditor;
class TFolderKind;
class TSettings;
enum class TOpenPlace;

// Finds favorites by a text, and opens, shows and deletes what was found. The results show from the first search on,
// until they are closed; they follow what becomes of the favorites.
class TFavoritesFindPanel final : public QWidget {
  Q_OBJECT

 public:
  // All must outlive this object. `kind` opens, `editor` takes back.
  TFavoritesFindPanel(const TLanguage &language, TSettings &settings, TFolderKind &kind, TFolderEditor &editor,
                      QWidget *parent = nullptr);

  // The tree shows this folder: what was found elsewhere cannot be shown there.
  void SetShownFolder(const QString &folder) { m_shownFolder = folder; }
  // There are results, or the row that says that there are none.
  [[nodiscard]] bool HasResults() const { return !m_sought.isEmpty(); }
  // Looks anew for what the results are of: something in the folder has changed.
  void Refresh();
  // The results go.
  void Close();

  [[nodiscard]] QTreeView *List() const { return m_list; }
  // Its parts, as the Tab key is to come by.
  [[nodiscard]] QWidgetList TabOrder() const;

 Q_SIGNALS:
  // The results have come or gone.
  void ResultsShown(bool isShown);
  // The keyboard is to go back to where it was before the search.
  void Left();
  // A file, to be shown in the tree.
  void RevealWanted(const QString &path);
  void PropertiesWanted(const TFavorite &favorite);

 protected:
  bool eventFilter(QObject *watched, QEvent *event) override;

 private:
  enum TCommand { Open, OpenInNewTab, OpenInBackground, Reveal, CopyAddress, Delete, Undo, Properties, CommandCount };

  void MakeParts();
  void MakeActions();
  void UpdateActions();
  void Run(TCommand command);
  void OpenRow(const QModelIndex &index, TOpenPlace place);
  void ShowMenu(const QPoint &place);
  void spdFindFavoritesClick();
  void Begin();
  void Take(const TFoundFavorites &found);
  void Finish();
  void ShowCount();
  [[nodiscard]] QAction *ActionFor(const QKeyEvent &event) const;
  [[nodiscard]] bool ListKeyDown(QKeyEvent &event);
  [[nodiscard]] bool OnMiddleButton(const QMouseEvent &event);
  void OnContextMenu(const QContextMenuEvent &event);

  const TLanguage &m_language;
  TSettings &m_settings;
  TFolderKind &m_kind;
  TFolderEditor &m_editor;
  TFavoritesResults m_results;
  TFavoritesFinder m_finder;
  QString m_shownFolder;
  QString m_sought;        // what the results are of; empty while there are none
  bool m_isAgain = false;  // what is searched for was found before
  bool m_isStale = false;  // something has changed since the search began
  TFoundFavorites m_again;

  QLineEdit *m_text = nullptr;    // edtFindFavorites
  QToolButton *m_find = nullptr;  // spdFindFavorites
  QWidget *m_head = nullptr;
  QLabel *m_count = nullptr;
  TCloseButton *m_close = nullptr;
  QTreeView *m_list = nullptr;  // lvFindFavorites
  std::array<QAction *, CommandCount> m_actions{};
  QPointer<QMenu> m_menu;
  QPersistentModelIndex m_middlePressed;
};
