#include "chrome/favorites/add_favorite_dialog.h"

#include <QPointer>

#include "config/language.h"
#include "favorites/favorites_edit.h"
#include "favorites/favorites_folder.h"
#include "ui/input_box.h"
#include "ui/message_box.h"
#include "ui/shown_text.h"
#include "ui_add_favorite_dialog.h"

namespace {

constexpr int WidthInCharacters = 50;
constexpr int PathRole = Qt::UserRole;
constexpr int FilledRole = Qt::UserRole + 1;

QString PathOf(const QTreeWidgetItem *node) {
  return node->data(0, PathRole).toString();
}

}  // namespace

TfrmAddFavorite::TfrmAddFavorite(const TLanguage &language, const QString &name, const QString &root,
                                 const QString &chosen, QWidget *parent)
    : QDialog(parent), m_language(language), m_ui(std::make_unique<Ui::TfrmAddFavorite>()) {
  m_ui->setupUi(this);
  language.TranslateForm(this, "FAVORITES");
  m_ui->edtName->setText(OneLine(name));
  m_ui->edtName->setMinimumWidth(fontMetrics().averageCharWidth() * WidthInCharacters);
  connect(m_ui->tvFolders, &QTreeWidget::itemExpanded, this, &TfrmAddFavorite::FillNode);
  connect(m_ui->edtName, &QLineEdit::textChanged, this, &TfrmAddFavorite::UpdateOk);
  connect(m_ui->cmdNewFolder, &QPushButton::clicked, this, &TfrmAddFavorite::MakeFolder);
  connect(m_ui->cmdOK, &QPushButton::clicked, this, &QDialog::accept);
  AddNode(m_ui->tvFolders->invisibleRootItem(),
          TLanguage::ShortHint(language.Text("FAVORITES_POPUP", "ShowFavoritesHint")), root);
  ShowFolder(chosen);
  UpdateOk();
  m_ui->edtName->selectAll();
  m_ui->edtName->setFocus();
}

TfrmAddFavorite::~TfrmAddFavorite() = default;

QString TfrmAddFavorite::Name() const {
  return m_ui->edtName->text().trimmed();
}

QString TfrmAddFavorite::Folder() const {
  return PathOf(m_ui->tvFolders->currentItem());
}

void TfrmAddFavorite::UpdateOk() {
  m_ui->cmdOK->setEnabled(!Name().isEmpty());
}

void TfrmAddFavorite::AddNode(QTreeWidgetItem *parent, const QString &caption, const QString &path) {
  auto *node = new QTreeWidgetItem(parent, {OneLine(caption)});
  node->setData(0, PathRole, path);
  node->setIcon(0, style()->standardIcon(QStyle::SP_DirIcon));
  node->setChildIndicatorPolicy(QTreeWidgetItem::ShowIndicator);
}

void TfrmAddFavorite::FillNode(QTreeWidgetItem *node) {
  if (node->data(0, FilledRole).toBool()) return;
  node->setData(0, FilledRole, true);
  node->setChildIndicatorPolicy(QTreeWidgetItem::DontShowIndicatorWhenChildless);
  for (const TFavorite &favorite : FavoritesFolder::List(PathOf(node))) {
    if (favorite.isFolder) AddNode(node, favorite.caption, favorite.path);
  }
}

void TfrmAddFavorite::ShowFolder(const QString &path) {
  QTreeWidgetItem *node = m_ui->tvFolders->topLevelItem(0);
  for (QTreeWidgetItem *next = node; next != nullptr;) {
    node = next;
    node->setExpanded(true);
    next = nullptr;
    for (int i = 0; i < node->childCount() && next == nullptr; ++i) {
      const QString child = PathOf(node->child(i));
      if (path == child || path.startsWith(child + u'/')) next = node->child(i);
    }
  }
  m_ui->tvFolders->setCurrentItem(node);
  m_ui->tvFolders->scrollToItem(node);
}

void TfrmAddFavorite::MakeFolder() {
  const QPointer<TfrmAddFavorite> self(this);
  const std::optional<QString> name = AskText(this, m_language,
                                              {.caption = m_language.Text("FAVORITES", "NewFolderCaption"),
                                               .prompt = m_language.Text("FAVORITES", "NewFolderPrompt"),
                                               .text = m_language.Text("HalvexGroups", "NewFolder")});
  if (!self || !name || name->trimmed().isEmpty()) return;
  const TFavoritesChange change = FavoritesEdit::AddFolder(Folder(), *name);
  if (!change.IsGood()) {
    ShowWarning(this, m_language, m_language.Text("HalvexGroups", "CannotMakeFolder").arg(change.error));
    return;
  }
  QTreeWidgetItem *parent = m_ui->tvFolders->currentItem();
  qDeleteAll(parent->takeChildren());
  parent->setData(0, FilledRole, false);
  FillNode(parent);
  ShowFolder(change.paths.value(0));
}
