#include "chrome/side_bar/groups_page.h"

#include <algorithm>
#include <QAction>
#include <QClipboard>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMenu>
#include <QMimeData>
#include <QPointer>
#include <QToolButton>
#include <QVBoxLayout>
#include <utility>

#include "browser/tabs/tab_strip.h"
#include "chrome/folder_view/folder_view.h"
#include "chrome/folder_view/message_line.h"
#include "chrome/side_bar/page_parts.h"
#include "config/language.h"
#include "config/settings.h"
#include "favorites/favorites_order.h"
#include "groups/page_groups.h"

namespace {

constexpr qsizetype MostUnfolded = 200;  // more groups are not looked at by themselves

}  // namespace

TGroupsPage::TGroupsPage(const TLanguage &language, TPageGroups &groups, TTabStrip &tabs, QWidget *parent)
    : QWidget(parent),
      m_language(language),
      m_groups(groups),
      m_settings(tabs.Environment().settings),
      m_kind(language, groups, tabs),
      m_tree(new TFolderView(m_kind, m_editor, language, TFolderView::TLook::Tree, TFolderModel::TShow::All, this)),
      m_message(new TMessageLine(this)),
      m_newFolder(
          PageParts::MakeIconButton(language.Text("HalvexGroups", "NewFolder"), "new_folder", "tbNewHGFolder", this)),
      m_refresh(
          PageParts::MakeIconButton(language.Text("HalvexGroups", "RefreshHint"), "refresh", "tbHGRefresh", this)) {
  MakeParts();
  MakeMenu();
  connect(m_tree, &TFolderView::RenameWanted, this, [this](const TFavorite &group) { RenameGroup(group.path); });
  connect(m_tree, &TFolderView::Told, m_message, &TMessageLine::Show);
  connect(&m_editor, &TFolderEditor::Done, this, [this] {
    m_message->Show(QString());
    m_groups.Folder().Refresh();
  });
  connect(&m_editor, &TFolderEditor::Failed, m_message, [this](const QString &reason) {
    m_message->Show(m_language.Text("HalvexGroups", "CannotChange").arg(reason));
  });
  connect(&m_groups.Folder(), &TGroupFolder::Changed, this, &TGroupsPage::Refresh);
  connect(&m_files, &QFileSystemWatcher::fileChanged, this, &TGroupsPage::Refresh);
  connect(m_tree, &QTreeView::expanded, this, [this](const QModelIndex &index) {
    const TFavorite one = m_tree->Model().At(index);
    if (!one.isFolder && m_unfolded.size() < MostUnfolded) m_unfolded.insert(one.path);
    WatchUnfolded();
  });
}

TGroupsPage::~TGroupsPage() {
  delete m_tree;  // it looks at the kind, which goes before it
}

void TGroupsPage::MakeParts() {
  m_tree->setObjectName(QStringLiteral("shHalvexGroups"));
  m_tree->setAccessibleName(m_language.Text("HalvexGroups", "TreeName"));
  setFocusProxy(m_tree);
  connect(m_newFolder, &QToolButton::clicked, this, &TGroupsPage::tbNewHGFolderClick);
  connect(m_refresh, &QToolButton::clicked, &m_groups.Folder(), &TGroupFolder::Refresh);
  auto *buttons = new QHBoxLayout;
  buttons->addWidget(m_newFolder);
  buttons->addWidget(m_refresh);
  buttons->addStretch();
  auto *layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addLayout(buttons);
  layout->addWidget(m_tree, 1);
  layout->addWidget(m_message);
  setTabOrder(m_newFolder, m_refresh);
  setTabOrder(m_refresh, m_tree);
}

void TGroupsPage::MakeMenu() {
  const auto make = [this](const char *name, const TTextKey &text, TFolderAction like, auto handler) {
    auto *action = new QAction(m_tree->Action(like)->icon(), m_language.Text(text), this);
    action->setObjectName(QLatin1String(name));
    // The keys are the tree's own.
    action->setShortcuts(m_tree->Action(like)->shortcuts());
    action->setShortcutContext(Qt::WidgetShortcut);
    connect(action, &QAction::triggered, this, handler);
    return action;
  };
  m_open = make("pmHGOpen", {"FOLDER_VIEW", "Open"}, TFolderAction::Open, &TGroupsPage::pmHGOpenClick);
  m_organize = make("pmHGOrganize", {"HalvexGroups", "Organize"}, TFolderAction::Open, &TGroupsPage::pmHGOrganizeClick);
  m_organize->setShortcuts(QList<QKeySequence>());
  m_organize->setIcon(QIcon());
  m_rename = make("pmHGRename", {"FOLDER_VIEW", "Rename"}, TFolderAction::Rename, &TGroupsPage::pmHGRenameClick);
  m_delete = make("pmHGDelete", {"FOLDER_VIEW", "Delete"}, TFolderAction::Delete,
                  [this] { m_tree->Action(TFolderAction::Delete)->trigger(); });
  m_makeFolder =
      make("pmHGNewFolder", {"FOLDER_VIEW", "NewFolder"}, TFolderAction::NewFolder, &TGroupsPage::tbNewHGFolderClick);
  m_lookAgain =
      make("pmHGRefresh", {"HalvexGroups", "Refresh"}, TFolderAction::Open, [this] { m_groups.Folder().Refresh(); });
  m_lookAgain->setShortcuts(QList<QKeySequence>());
  m_lookAgain->setIcon(m_refresh->icon());
  m_tree->SetMenu(QStringLiteral("pmHalvexGroups"), [this](QMenu &menu) { FillMenu(menu); });
}

void TGroupsPage::FillMenu(QMenu &menu) {
  m_tree->UpdateActions();
  const TFavorite one = m_tree->Sole();
  const bool arePages = !m_tree->SelectedParts().isEmpty();
  m_open->setEnabled(m_tree->Action(TFolderAction::Open)->isEnabled());
  m_organize->setEnabled(!one.path.isEmpty() && !one.isFolder);
  m_rename->setEnabled(!one.path.isEmpty());
  m_delete->setEnabled(m_tree->Action(TFolderAction::Delete)->isEnabled());
  const QMimeData *clip = QGuiApplication::clipboard()->mimeData();
  const bool isForGroup = m_tree->currentIndex().isValid() && !m_tree->Current().isFolder;
  m_tree->Action(TFolderAction::Paste)
      ->setEnabled(clip != nullptr && (m_kind.CanTake(*clip) || (isForGroup && m_kind.Parts()->CanTake(*clip))));
  const auto add = [&menu, this](std::initializer_list<TFolderAction> actions) {
    for (const TFolderAction action : actions) menu.addAction(m_tree->Action(action));
  };
  menu.addAction(m_open);
  if (arePages) {
    add({TFolderAction::OpenInNewTab, TFolderAction::OpenInBackground});
  } else {
    menu.addAction(m_organize);
    menu.addAction(m_rename);
  }
  menu.setDefaultAction(m_open);
  menu.addAction(m_delete);
  menu.addAction(m_makeFolder);
  menu.addSeparator();
  add({TFolderAction::Cut, TFolderAction::Copy, TFolderAction::Paste});
  if (arePages) add({TFolderAction::CopyAddress});
  add({TFolderAction::Undo});
  menu.addSeparator();
  add({TFolderAction::MoveUp, TFolderAction::MoveDown});
  if (!arePages) add({TFolderAction::SortByName});
  menu.addSeparator();
  menu.addAction(m_lookAgain);
}

void TGroupsPage::showEvent(QShowEvent *event) {
  QWidget::showEvent(event);
  if (!std::exchange(m_wasShown, true)) {
    m_groups.Folder().Watch();
    m_settings.Apply(Setting::HBAutoExpand, m_tree,
                     [this] { m_tree->SetKeepsOneOpen(m_settings.Get(Setting::HBAutoExpand)); });
    m_tree->SetRoot(TGroupFolder::Path(), m_tree->accessibleName());
  } else if (m_isStale) {
    Refresh();
  }
}

void TGroupsPage::Refresh() {
  m_isStale = !isVisible();
  if (m_isStale) return;
  m_tree->Refresh();
  WatchUnfolded();
}

void TGroupsPage::WatchUnfolded() {
  const QStringList watched = m_files.files();
  for (const QString &path : std::as_const(m_unfolded)) {
    // One that was written by way of another file is not watched any more.
    if (!watched.contains(path) && QFileInfo::exists(path)) m_files.addPath(path);
  }
}

void TGroupsPage::tbNewHGFolderClick() {
  m_tree->Action(TFolderAction::NewFolder)->trigger();
}

void TGroupsPage::pmHGOpenClick() {
  const TFavorite one = m_tree->Sole();
  // Other than a key it never folds one up.
  if (one.isFolder) return m_tree->expand(m_tree->Model().Nearest(one.path));
  m_tree->Action(TFolderAction::Open)->trigger();
}

void TGroupsPage::pmHGOrganizeClick() {
  m_groups.Organize(m_tree->Sole().path);
}

void TGroupsPage::pmHGRenameClick() {
  m_tree->Action(TFolderAction::Rename)->trigger();
}

void TGroupsPage::RenameGroup(const QString &path) {
  const QPointer<TGroupsPage> self(this);
  const QString to = m_groups.Folder().Rename(path);
  if (!self || to.isEmpty()) return;
  TFavoritesChange change{.steps = {{TFavoritesChange::TStep::TKind::Moved, path, to, {}}}, .paths = {to}};
  const QFileInfo before(path);
  if (auto order = FavoritesOrder::Read(before.path())) {
    std::ranges::replace(*order, before.fileName(), QFileInfo(to).fileName());
    change.steps += FavoritesEdit::Order(before.path(), order).steps;
  }
  m_editor.Note(change);
  m_tree->Select({to});
}
