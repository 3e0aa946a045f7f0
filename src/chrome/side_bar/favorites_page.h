#pragma once

#include <QWidget>

#include "chrome/favorites/favorite_commands.h"
#include "chrome/favorites/favorite_kind.h"
#include "chrome/folder_view/folder_editor.h"

class QSplitter;
class TFavoritesFindPanel;
class TFolderView;
class TMessageLine;
class TSettings;

// The side bar's page of favorites: the tree of all of them, with all that can be done in one, and a search below it.
// Nothing is read before it shows for the first time.
//
// Its owner joins it with the other places that show favorites: Changed has them look again, and what changes
// elsewhere is told by Refresh.
class TFavoritesPage final : public QWidget {
  Q_OBJECT

 public:
  // All must outlive this object.
  TFavoritesPage(const TLanguage &language, TSettings &settings, TFavoriteLauncher &launcher,
                 const TFavoriteIcons &icons, QWidget *parent = nullptr);
  ~TFavoritesPage() override;

  // Shows what is on the disk now, at once or when the page is next to be seen. Nothing closes under the user's hand.
  void Refresh();

 Q_SIGNALS:
  // Something was done to the files here.
  void Changed();
  // The window is wanted in which favorites are put in order, with that folder.
  void OrganizeWanted(const QString &folder);

 protected:
  bool event(QEvent *event) override;
  void keyPressEvent(QKeyEvent *event) override;
  void showEvent(QShowEvent *event) override;

 private:
  void MakeParts();
  void Connect();
  void ShowResults(bool isShown);

  const TLanguage &m_language;
  TSettings &m_settings;
  TFavoriteCommands m_commands;
  TFavoriteKind m_kind;
  TFolderEditor m_editor;
  TFolderView *m_tree;
  TFavoritesFindPanel *m_find;
  TMessageLine *m_message;
  QSplitter *m_splitter;
  QList<int> m_sizes;  // of tree and results, when the results were last closed
  bool m_wasShown = false;
};
