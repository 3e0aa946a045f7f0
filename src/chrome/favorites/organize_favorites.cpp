#include "chrome/favorites/organize_favorites.h"

#include <QAbstractItemDelegate>
#include <QClipboard>
#include <QGuiApplication>
#include <QMenu>
#include <QMimeData>
#include <QSplitter>
#include <QToolBar>
#include <QVBoxLayout>

#include "chrome/favorites/favorite_drag.h"
#include "chrome/favorites/favorite_icons.h"
#include "chrome/favorites/favorite_list.h"
#include "config/language.h"
#include "favorites/favorites_order.h"
#include "ui/message_box.h"

namespace {

constexpr int WidthInCharacters = 110;
constexpr int HeightInLines = 28;

}  // namespace

TfrmOrganizeFavorites::TfrmOrganizeFavorites(const TLanguage &language, TFavoriteLauncher &launcher,
                                             const TFavoriteIcons &icons, const QString &root, QWidget *parent)
    : QDialog(parent),
      m_language(language),
      m_launcher(launcher),
      m_icons(icons),
      m_commands(this, launcher, language),
      m_root(root),
      m_bar(new QToolBar(this)),
      m_tree(new TFolderTree),
      m_list(new TFavoriteList) {
  setObjectName(QStringLiteral("TfrmOrganizeFavorites"));
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowTitle(language.Text("FAVORITES", "OrganizeCaption"));
  m_tree->setAccessibleName(language.Text("FAVORITES", "FoldersName"));
  m_list->setAccessibleName(language.Text("FAVORITES", "ContentsName"));
  m_list->setContextMenuPolicy(Qt::CustomContextMenu);
  auto *splitter = new QSplitter;
  splitter->addWidget(m_tree);
  splitter->addWidget(m_list);
  splitter->setStretchFactor(1, 2);
  auto *layout = new QVBoxLayout(this);
  layout->addWidget(m_bar);
  layout->addWidget(splitter);
  resize(fontMetrics().averageCharWidth() * WidthInCharacters, fontMetrics().height() * HeightInLines);
  MakeActions();
  connect(m_tree, &QTreeWidget::currentItemChanged, this, &TfrmOrganizeFavorites::ShowContents);
  connect(m_tree, &TFolderTree::Dropped, this, &TfrmOrganizeFavorites::Drop);
  connect(m_list, &TFavoriteList::Dropped, this, &TfrmOrganizeFavorites::Drop);
  connect(m_list, &QListWidget::itemSelectionChanged, this, &TfrmOrganizeFavorites::UpdateActions);
  connect(m_list, &QListWidget::itemDoubleClicked, this, &TfrmOrganizeFavorites::OpenCurrent);
  connect(m_list, &QListWidget::customContextMenuRequested, this, &TfrmOrganizeFavorites::ShowMenu);
  connect(
      m_list->itemDelegate(), &QAbstractItemDelegate::closeEditor, this,
      [this] {
        if (m_isStale) Refresh();
      },
      Qt::QueuedConnection);
  connect(m_list, &TFavoriteList::Renamed, this, [this](const TFavorite &favorite, const QString &caption) {
    Do(FavoritesEdit::Rename(favorite.path, caption));
  });
  connect(&m_commands, &TFavoriteCommands::Changed, this, [this] {
    Refresh();
    Q_EMIT Changed();
  });
  connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this, &TfrmOrganizeFavorites::UpdateActions);
  FavoritesFolder::Make(root);
  m_tree->SetRoot(TLanguage::ShortHint(language.Text("FAVORITES_POPUP", "ShowFavoritesHint")), root);
  ShowContents();
  m_list->setFocus();
}

QAction *TfrmOrganizeFavorites::MakeAction(const QString &text, const char *name, const char *icon,
                                           const QList<QKeySequence> &keys, THandler handler) {
  auto *action = new QAction(text, this);
  action->setObjectName(QLatin1String(name));
  if (*icon != '\0') action->setIcon(QIcon(QStringLiteral(":/icons/%1.svg").arg(QLatin1String(icon))));
  action->setShortcuts(keys);
  // Of the parts that show favorites: in the box of a name the keys mean its text.
  action->setShortcutContext(Qt::WidgetShortcut);
  m_list->addAction(action);
  m_tree->addAction(action);
  connect(action, &QAction::triggered, this, handler);
  return action;
}

void TfrmOrganizeFavorites::MakeActions() {
  using enum QKeySequence::StandardKey;
  const TLanguage &language = m_language;
  m_open = MakeAction(language.Global("Open"), "actOpenFavorite", "open",
                      {QKeySequence(Qt::Key_Return), QKeySequence(Qt::Key_Enter)}, &TfrmOrganizeFavorites::OpenCurrent);
  m_newFolder = MakeAction(language.Text("FAVORITES", "NewFolder"), "actNewFolder", "new_tab", {QKeySequence(New)},
                           &TfrmOrganizeFavorites::NewFolder);
  m_rename = MakeAction(language.Text("FAVORITES", "Rename"), "actRenameFavorite", "edit", {QKeySequence(Qt::Key_F2)},
                        &TfrmOrganizeFavorites::Rename);
  m_delete = MakeAction(language.Text("FAVORITES", "Delete"), "actDeleteFavorite", "close_tab",
                        {QKeySequence(QKeySequence::Delete)}, &TfrmOrganizeFavorites::Delete);
  m_undo = MakeAction(language.Text("PAGE_MENU", "Undo"), "actUndoFavorite", "", {QKeySequence(QKeySequence::Undo)},
                      &TfrmOrganizeFavorites::Undo);
  m_cut = MakeAction(language.Text("PAGE_MENU", "Cut"), "actCutFavorite", "cut", {QKeySequence(QKeySequence::Cut)},
                     &TfrmOrganizeFavorites::Cut);
  m_copy = MakeAction(language.Text("PAGE_MENU", "Copy"), "actCopyFavorite", "copy", {QKeySequence(QKeySequence::Copy)},
                      &TfrmOrganizeFavorites::Copy);
  m_paste = MakeAction(language.Text("PAGE_MENU", "Paste"), "actPasteFavorite", "paste",
                       {QKeySequence(QKeySequence::Paste)}, &TfrmOrganizeFavorites::Paste);
  m_sort = MakeAction(language.Text("FAVORITES", "SortByName"), "actSortFavorites", "", {},
                      &TfrmOrganizeFavorites::SortByName);
  m_properties = MakeAction(language.Text("FAVORITES", "Properties"), "actFavoriteProperties", "properties",
                            {QKeySequence(Qt::ALT | Qt::Key_Return)}, &TfrmOrganizeFavorites::ShowProperties);
  MakeAction(QString(), "actFavoritesUp", "", {QKeySequence(Qt::Key_Backspace)}, &TfrmOrganizeFavorites::GoUp);
  // These are about what is selected in the list, and are not to reach it from the tree.
  for (QAction *action : {m_open, m_rename, m_delete, m_cut, m_copy, m_properties}) m_tree->removeAction(action);
  m_bar->addActions({m_newFolder, m_rename, m_delete, m_undo});
  m_bar->addSeparator();
  m_bar->addActions({m_cut, m_copy, m_paste});
  m_bar->addSeparator();
  m_bar->addActions({m_sort, m_properties});
}

QString TfrmOrganizeFavorites::Folder() const {
  return m_tree->Current();
}

void TfrmOrganizeFavorites::ShowFolder(const QString &path) {
  m_tree->ShowFolder(path);
}

void TfrmOrganizeFavorites::ShowContents() {
  m_list->Show(FavoritesFolder::List(Folder()), m_icons.Folder(), m_icons.Page());
  UpdateActions();
}

void TfrmOrganizeFavorites::Refresh() {
  // Not under a name that is being typed.
  m_isStale = m_list->IsEditing();
  if (m_isStale) return;
  m_tree->Refresh();
  ShowContents();
}

void TfrmOrganizeFavorites::UpdateActions() {
  const qsizetype selected = m_list->selectedItems().size();
  for (QAction *action : {m_open, m_rename, m_properties}) action->setEnabled(selected == 1);
  for (QAction *action : {m_delete, m_cut, m_copy}) action->setEnabled(selected > 0);
  m_undo->setEnabled(!m_done.isEmpty());
  const QMimeData *clip = QGuiApplication::clipboard()->mimeData();
  m_paste->setEnabled(clip != nullptr && FavoriteDrag::HasPaths(*clip));
  m_sort->setEnabled(FavoritesOrder::Read(Folder()).has_value());
}

void TfrmOrganizeFavorites::Do(const TFavoritesChange &change) {
  if (!change.IsEmpty()) m_done.append(change);
  Refresh();
  if (!change.paths.isEmpty()) m_list->Select(change.paths);
  UpdateActions();
  if (!change.IsGood()) {
    ShowWarning(this, m_language, m_language.Text("FAVORITES", "CannotChange").arg(change.error));
  }
  Q_EMIT Changed();
}

void TfrmOrganizeFavorites::Drop(const QStringList &paths, const QString &folder, int position, bool isCopied) {
  const QString place = folder.isEmpty() ? Folder() : folder;
  Do(isCopied ? FavoritesEdit::Copy(paths, place, position) : FavoritesEdit::Move(paths, place, position));
}

void TfrmOrganizeFavorites::NewFolder() {
  const TFavoritesChange change = FavoritesEdit::AddFolder(Folder(), m_language.Text("HalvexGroups", "NewFolder"));
  Do(change);
  if (change.IsGood() && m_list->selectedItems().size() == 1) Rename();
}

void TfrmOrganizeFavorites::Rename() {
  if (m_list->currentItem() == nullptr) return;
  m_list->setFocus();
  m_list->editItem(m_list->currentItem());
}

void TfrmOrganizeFavorites::Delete() {
  Do(FavoritesEdit::Trash(m_list->SelectedPaths()));
}

void TfrmOrganizeFavorites::Undo() {
  if (m_done.isEmpty()) return;
  const TFavoritesChange change = FavoritesEdit::Undo(m_done.takeLast());
  Refresh();
  if (!change.IsGood()) {
    ShowWarning(this, m_language, m_language.Text("FAVORITES", "CannotChange").arg(change.error));
  }
  Q_EMIT Changed();
}

void TfrmOrganizeFavorites::Cut() {
  QGuiApplication::clipboard()->setMimeData(FavoriteDrag::DataOf(m_list->SelectedPaths(), true));
}

void TfrmOrganizeFavorites::Copy() {
  QGuiApplication::clipboard()->setMimeData(FavoriteDrag::DataOf(m_list->SelectedPaths()));
}

void TfrmOrganizeFavorites::Paste() {
  const QMimeData *clip = QGuiApplication::clipboard()->mimeData();
  if (clip == nullptr) return;
  const QStringList paths = FavoriteDrag::PathsIn(*clip);
  const bool isCut = FavoriteDrag::IsCut(*clip);
  if (paths.isEmpty()) return;
  if (isCut) QGuiApplication::clipboard()->clear();  // it is there only once
  Do(isCut ? FavoritesEdit::Move(paths, Folder()) : FavoritesEdit::Copy(paths, Folder()));
}

void TfrmOrganizeFavorites::SortByName() {
  Do(FavoritesEdit::Order(Folder(), std::nullopt));
}

void TfrmOrganizeFavorites::ShowProperties() {
  const TFavorite favorite = m_list->Current();
  if (!favorite.path.isEmpty()) m_commands.ShowProperties(favorite);
}

void TfrmOrganizeFavorites::OpenCurrent() {
  const TFavorite favorite = m_list->Current();
  if (favorite.path.isEmpty()) return;
  if (favorite.isFolder) {
    ShowFolder(favorite.path);
  } else {
    m_launcher.Open(favorite, TFavoritePlace::BySetting);
  }
}

void TfrmOrganizeFavorites::GoUp() {
  if (Folder() != m_root) ShowFolder(Folder().section(u'/', 0, -2));
}

void TfrmOrganizeFavorites::ShowMenu(const QPoint &place) {
  auto *menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  menu->addActions({m_open, m_newFolder});
  menu->addSeparator();
  menu->addActions({m_cut, m_copy, m_paste});
  menu->addSeparator();
  menu->addActions({m_rename, m_delete, m_undo, m_sort, m_properties});
  menu->popup(m_list->viewport()->mapToGlobal(place));
}
