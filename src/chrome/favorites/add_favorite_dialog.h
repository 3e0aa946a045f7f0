#pragma once

#include <memory>
#include <QDialog>
#include <QString>

#include "chrome/folder_view/folder_editor.h"
#include "chrome/folder_view/folder_kind.h"

class TFolderView;
class TLanguage;

namespace Ui {
class TfrmAddFavorite;
}

// Asks under which name and in which folder a page becomes a favorite. Folders are read when they are opened.
class TfrmAddFavorite final : public QDialog {
  Q_OBJECT

 public:
  // `root` is the folder of all favorites, which need not be there; `chosen` the one below it that is proposed.
  TfrmAddFavorite(const TLanguage &language, const QString &name, const QString &root, const QString &chosen,
                  QWidget *parent = nullptr);
  ~TfrmAddFavorite() override;

  [[nodiscard]] QString Name() const;
  [[nodiscard]] QString Folder() const;

 private:
  void UpdateOk();

  const TLanguage &m_language;
  TFolderKind m_kind;
  TFolderEditor m_editor;
  std::unique_ptr<Ui::TfrmAddFavorite> m_ui;
  TFolderView *m_folders;
};
