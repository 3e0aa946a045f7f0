#include "chrome/favorites/organize_favorites.h"

#include <QAction>
#include <QSplitter>
#include <QToolBar>
#include <QVBoxLayout>

#include "chrome/folder_view/folder_view.h"
#include "chrome/folder_view/message_line.h"
#include "config/language.h"
#include "ui/dialog_placing.h"

namespace {

constexpr int WidthInCharacters = 110;
constexpr int HeightInLines = 28;

}  // namespace

TfrmOrganizeFavorites::TfrmOrganizeFavorites(const TLanguage &language, TFavoriteLauncher &launcher,
                                             const TFavoriteIcons &icons, const QString &root, QWidget *parent)
    : QDialog(parent),
      m_commands(this, launcher, language),
      m_kind(launcher, icons),
      m_root(root),
      m_tree(new TFolderView(m_kind, m_editor, language, TFolderView::TLook::TreeWithRoot,
                             TFolderModel::TShow::FoldersOnly)),
      m_list(new TFolderView(m_kind, m_editor, language, TFolderView::TLook::List)),
      m_message(new TMessageLine) {
  setObjectName(QStringLiteral("TfrmOrganizeFavorites"));
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowTitle(language.Text("FAVORITES", "OrganizeCaption"));
  m_tree->setObjectName(QStringLiteral("tvFolders"));
  m_tree->setAccessibleName(language.Text("FAVORITES", "FoldersName"));
  m_list->setObjectName(QStringLiteral("lvFavorites"));
  m_list->setAccessibleName(language.Text("FAVORITES", "ContentsName"));
  auto *splitter = new QSplitter;
  splitter->addWidget(m_tree);
  splitter->addWidget(m_list);
  splitter->setStretchFactor(1, 2);
  auto *bar = new QToolBar;
  for (const TFolderAction action :
       {TFolderAction::NewFolder, TFolderAction::Rename, TFolderAction::Delete, TFolderAction::Undo}) {
    bar->addAction(m_list->Action(action));
  }
  auto *layout = new QVBoxLayout(this);
  layout->addWidget(bar);
  layout->addWidget(splitter, 1);
  layout->addWidget(m_message);
  ResizeOnScreen(*this, {fontMetrics().averageCharWidth() * WidthInCharacters, fontMetrics().height() * HeightInLines});
  auto *up = new QAction(this);
  up->setShortcuts({QKeySequence(Qt::Key_Backspace), QKeySequence(Qt::ALT | Qt::Key_Left)});
  up->setShortcutContext(Qt::WidgetShortcut);
  m_list->addAction(up);
  connect(up, &QAction::triggered, this, &TfrmOrganizeFavorites::GoUp);
  Equip(*m_tree);
  Equip(*m_list);
  connect(m_tree, &TFolderView::CurrentChanged, this, &TfrmOrganizeFavorites::ShowContents);
  connect(m_list, &TFolderView::FolderWanted, this, &TfrmOrganizeFavorites::ShowFolder);
  connect(&m_commands, &TFavoriteCommands::Done, &m_editor, &TFolderEditor::Note);
  connect(&m_editor, &TFolderEditor::Done, this, [this] {
    m_message->Show(QString());
    ShowContents();  // the folder that is shown may have another name now
    Q_EMIT Changed();
  });
  connect(&m_editor, &TFolderEditor::Failed, m_message, [this, &language](const QString &reason) {
    m_message->Show(language.Text("FAVORITES", "CannotChange").arg(reason));
  });
  FavoritesFolder::Make(root);
  m_tree->SetRoot(root, TLanguage::ShortHint(language.Text("FAVORITES_POPUP", "ShowFavoritesHint")));
  ShowContents();
  m_list->setFocus();
}

void TfrmOrganizeFavorites::Equip(TFolderView &view) {
  m_kind.Serve(view);
  connect(&view, &TFolderView::PropertiesWanted, &m_commands, &TFavoriteCommands::ShowProperties);
  connect(&view, &TFolderView::Told, m_message, &TMessageLine::Show);
}

void TfrmOrganizeFavorites::ShowFolder(const QString &path) {
  m_tree->Reveal(path);
}

void TfrmOrganizeFavorites::ShowContents() {
  const QString folder = m_tree->Current().path;
  if (!folder.isEmpty() && folder != m_list->Model().Root()) m_list->SetRoot(folder, QString());
}

void TfrmOrganizeFavorites::Refresh() {
  m_tree->Refresh();
  m_list->Refresh();
}

void TfrmOrganizeFavorites::GoUp() {
  const QString folder = m_list->Model().Root();
  if (folder != m_root) ShowFolder(folder.section(u'/', 0, -2));
}
