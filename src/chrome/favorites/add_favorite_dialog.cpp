#include "chrome/favorites/add_favorite_dialog.h"

#include "chrome/folder_view/folder_view.h"
#include "chrome/folder_view/new_folder.h"
#include "config/language.h"
#include "platform/folder_entries.h"
#include "ui/shown_text.h"
#include "ui_add_favorite_dialog.h"

namespace {

constexpr int WidthInCharacters = 50;

// The folder, or the nearest above it that is still there and not above the root.
QString NearestFolder(const QString &folder, const QString &root) {
  QString nearest = folder;
  while (nearest.startsWith(root + u'/') && !FolderEntries::IsFolder(nearest)) nearest = nearest.section(u'/', 0, -2);
  return nearest.startsWith(root + u'/') ? nearest : root;
}

}  // namespace

TfrmAddFavorite::TfrmAddFavorite(const TLanguage &language, const QString &name, const QString &root,
                                 const QString &chosen, QWidget *parent)
    : QDialog(parent),
      m_language(language),
      m_ui(std::make_unique<Ui::TfrmAddFavorite>()),
      m_folders(new TFolderView(m_kind, m_editor, language, TFolderView::TLook::TreeWithRoot,
                                TFolderModel::TShow::FoldersOnly)) {
  m_ui->setupUi(this);
  language.TranslateForm(this, "FAVORITES");
  m_ui->layFolders->addWidget(m_folders);
  m_ui->lblFolder->setBuddy(m_folders);
  m_folders->SetReadOnly();
  m_folders->setObjectName(QStringLiteral("tvFolders"));
  m_ui->edtName->setText(OneLine(name));
  m_ui->edtName->setMinimumWidth(fontMetrics().averageCharWidth() * WidthInCharacters);
  setTabOrder(m_ui->edtName, m_folders);
  setTabOrder(m_folders, m_ui->cmdNewFolder);
  connect(m_ui->edtName, &QLineEdit::textChanged, this, &TfrmAddFavorite::UpdateOk);
  connect(m_ui->cmdNewFolder, &QPushButton::clicked, this,
          [this] { MakeNewFolder(this, m_language, *m_folders, m_editor); });
  connect(m_ui->cmdOK, &QPushButton::clicked, this, &QDialog::accept);
  m_folders->SetRoot(root, TLanguage::ShortHint(language.Text("FAVORITES_POPUP", "ShowFavoritesHint")));
  m_folders->Reveal(NearestFolder(chosen, root));
  UpdateOk();
  m_ui->edtName->selectAll();
  m_ui->edtName->setFocus();
}

TfrmAddFavorite::~TfrmAddFavorite() = default;

QString TfrmAddFavorite::Name() const {
  return m_ui->edtName->text().trimmed();
}

QString TfrmAddFavorite::Folder() const {
  return m_folders->Folder();
}

void TfrmAddFavorite::UpdateOk() {
  m_ui->cmdOK->setEnabled(!Name().isEmpty());
}
