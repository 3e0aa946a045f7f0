#pragma once

#include <functional>
#include <memory>
#include <QDialog>
#include <QString>

#include "chrome/folder_view/folder_editor.h"
#include "chrome/folder_view/folder_kind.h"

class TFolderView;
class TLanguage;

namespace Ui {
class TfrmSaveGroup;
}

// Asks under which name and in which folder of the page groups a new one is saved; or, behind a button, for any file.
class TfrmSaveGroup final : public QDialog {
  Q_OBJECT

 public:
  // Has the user choose any file, over that widget; answers with its path, or with nothing.
  using TBrowse = std::function<QString(QWidget *)>;

  // `root` is the folder of all groups.
  TfrmSaveGroup(const TLanguage &language, const QString &root, TBrowse browse, QWidget *parent = nullptr);
  ~TfrmSaveGroup() override;

  // The file that was chosen; its name may lack its ending. A name is made fit for every file system.
  [[nodiscard]] QString File() const;

  // Shows the dialog. What was chosen, or nothing; also where the window has gone meanwhile.
  [[nodiscard]] static QString Ask(QWidget *window, const TLanguage &language, const TBrowse &browse);

 private:
  [[nodiscard]] QString Name() const;
  void Browse();

  const TLanguage &m_language;
  TBrowse m_browse;
  TFolderKind m_kind;
  TFolderEditor m_editor;
  std::unique_ptr<Ui::TfrmSaveGroup> m_ui;
  TFolderView *m_folders;
  QString m_browsed;
};
