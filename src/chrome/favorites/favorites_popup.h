#pragma once

#include <QFrame>
#include <QIcon>

#include "chrome/favorites/favorite_commands.h"
#include "chrome/favorites/favorite_kind.h"
#include "chrome/folder_view/folder_editor.h"

class TFolderView;
class TMessageLine;
class TSettings;

// The favorites in a small window below a button. It goes when something is opened (but for background tabs, of which
// one wants several), by Escape, and by a click elsewhere; its lower corner makes it larger or smaller.
class TfrmFavorites final : public QFrame {
  Q_OBJECT

 public:
  // All must outlive the window.
  TfrmFavorites(const TLanguage &language, TFavoriteLauncher &launcher, const TFavoriteIcons &icons,
                TSettings &settings, QWidget *parent);

  // Shows the folder below `button`, a rectangle of the screen; where reading runs from right to left the right edges
  // meet. Does nothing while it is to be seen.
  void ShowBelow(const QRect &button, const QString &folder);
  void Refresh();

  static constexpr QSize Smallest{160, 120};  // pixels

 Q_SIGNALS:
  // Something was done to the files.
  void Changed();

 protected:
  void keyPressEvent(QKeyEvent *event) override;
  void mousePressEvent(QMouseEvent *event) override;
  void hideEvent(QHideEvent *event) override;

 private:
  // As the tool bar does: in colours at all times, or only under the mouse. Closes the window before a page opens.
  class TKind final : public TFavoriteKind {
   public:
    TKind(TfrmFavorites &window, TFavoriteLauncher &launcher, const TFavoriteIcons &icons);
    [[nodiscard]] QIcon FolderIcon() const override;
    [[nodiscard]] QIcon FileIcon() const override;
    [[nodiscard]] int IconVersion() const override;
    void Open(const TFavorite &file, TOpenPlace place) override;
    void OpenAll(const QString &folder) override;

   private:
    [[nodiscard]] bool IsInk() const;

    TfrmFavorites &m_window;
    QIcon m_inkFolder;
    QIcon m_inkPage;
  };

  TSettings &m_settings;
  TFavoriteCommands m_commands;
  TKind m_kind;
  TFolderEditor m_editor;
  TFolderView *m_tree;
  TMessageLine *m_message;
  QRect m_button;
};
