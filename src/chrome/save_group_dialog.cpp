#include "chrome/save_group_dialog.h"

#include <QPointer>
#include <utility>

#include "chrome/folder_view/folder_view.h"
#include "chrome/folder_view/new_folder.h"
#include "config/language.h"
#include "groups/group_folder.h"
#include "ui/dialog_gate.h"
#include "ui_save_group_dialog.h"

namespace {

constexpr int WidthInCharacters = 50;

}  // namespace

TfrmSaveGroup::TfrmSaveGroup(const TLanguage &language, const QString &root, TBrowse browse, QWidget *parent)
    : QDialog(parent),
      m_language(language),
      m_browse(std::move(browse)),
      m_ui(std::make_unique<Ui::TfrmSaveGroup>()),
      m_folders(new TFolderView(m_kind, m_editor, language, TFolderView::TLook::TreeWithRoot,
                                TFolderModel::TShow::FoldersOnly)) {
  m_ui->setupUi(this);
  language.TranslateForm(this, "HalvexGroups");
  m_ui->layFolders->addWidget(m_folders);
  m_ui->lblFolder->setBuddy(m_folders);
  m_folders->SetReadOnly();
  m_folders->setObjectName(QStringLiteral("tvFolders"));
  m_ui->edtName->setMinimumWidth(fontMetrics().averageCharWidth() * WidthInCharacters);
  setTabOrder(m_ui->edtName, m_folders);
  setTabOrder(m_folders, m_ui->cmdNewFolder);
  connect(m_ui->edtName, &QLineEdit::textChanged, this, [this] { m_ui->cmdOK->setEnabled(!Name().isEmpty()); });
  connect(m_ui->cmdNewFolder, &QPushButton::clicked, this,
          [this] { MakeNewFolder(this, m_language, *m_folders, m_editor); });
  connect(m_ui->cmdBrowse, &QPushButton::clicked, this, &TfrmSaveGroup::Browse);
  connect(m_ui->cmdOK, &QPushButton::clicked, this, &QDialog::accept);
  m_folders->SetRoot(root, language.Text("HalvexGroups", "TreeName"));
  m_folders->Reveal(root);
  m_ui->cmdOK->setEnabled(false);
  m_ui->edtName->setFocus();
}

TfrmSaveGroup::~TfrmSaveGroup() {
  delete m_folders;  // it looks at what goes before it
}

QString TfrmSaveGroup::Name() const {
  return m_ui->edtName->text().trimmed();
}

QString TfrmSaveGroup::File() const {
  return m_browsed.isEmpty() ? m_folders->Folder() + u'/' + FavoritesEdit::NameFor(Name(), {}) : m_browsed;
}

QString TfrmSaveGroup::Ask(QWidget *window, const TLanguage &language, const TBrowse &browse) {
  if (DialogGate::IsClosed()) return {};
  const QPointer<TfrmSaveGroup> dialog(new TfrmSaveGroup(language, TGroupFolder::Path(), browse, window));
  const bool isAccepted = dialog->exec() == Accepted;
  if (!dialog) return {};
  const QString file = isAccepted ? dialog->File() : QString();
  delete dialog;
  return file;
}

void TfrmSaveGroup::Browse() {
  const QPointer<TfrmSaveGroup> self(this);
  const QString file = m_browse(this);
  if (!self || file.isEmpty()) return;
  m_browsed = file;
  accept();
}
