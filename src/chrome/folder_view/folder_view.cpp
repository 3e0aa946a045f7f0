#include "chrome/folder_view/folder_view.h"

#include <algorithm>
#include <QAction>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QMenu>
#include <QScrollBar>

#include "actions/actions.h"
#include "chrome/folder_view/folder_editor.h"
#include "chrome/folder_view/folder_kind.h"
#include "config/language.h"
#include "favorites/favorite_drag.h"

namespace {

// More pages at once are what OpenAll is for, which asks.
constexpr qsizetype MostOpened = 20;

struct TActionRow {
  TFolderAction action;
  TTextKey text;
  const char *name;
  const char *icon;  // empty for none
  const char *keys;  // portable
};

// In the order of the enumeration.
// clang-format off
constexpr TActionRow Rows[] = {
    {TFolderAction::Open, {"FOLDER_VIEW", "Open"}, "actOpenFavorite", "open", "Return; Enter"},
    {TFolderAction::OpenAll, {"FOLDER_VIEW", "OpenAll"}, "actOpenAllFavorites", "", ""},
    {TFolderAction::OpenInNewTab, {"FOLDER_VIEW", "OpenInNewTab"}, "actOpenFavoriteInNewTab", "new_tab", "Shift+Return; Shift+Enter"},
    {TFolderAction::OpenInBackground, {"FOLDER_VIEW", "OpenInBackground"}, "actOpenFavoriteInBackground", "", "Ctrl+Return; Ctrl+Enter"},
    {TFolderAction::Cut, {"FOLDER_VIEW", "Cut"}, "actCutFavorite", "cut", "Ctrl+X; Shift+Del"},
    {TFolderAction::Copy, {"FOLDER_VIEW", "Copy"}, "actCopyFavorite", "copy", "Ctrl+C; Ctrl+Ins"},
    {TFolderAction::Paste, {"FOLDER_VIEW", "Paste"}, "actPasteFavorite", "paste", "Ctrl+V; Shift+Ins"},
    {TFolderAction::Rename, {"FOLDER_VIEW", "Rename"}, "actRenameFavorite", "edit", "F2"},
    {TFolderAction::Delete, {"FOLDER_VIEW", "Delete"}, "actDeleteFavorite", "close_tab", "Del"},
    {TFolderAction::NewFolder, {"FOLDER_VIEW", "NewFolder"}, "actNewFolder", "new_folder", "Ctrl+N"},
    {TFolderAction::Undo, {"FOLDER_VIEW", "Undo"}, "actUndoFavorite", "", "Ctrl+Z; Alt+Backspace"},
    {TFolderAction::SortByName, {"FOLDER_VIEW", "SortByName"}, "actSortFavorites", "", ""},
    {TFolderAction::MoveUp, {"FOLDER_VIEW", "MoveUp"}, "actMoveFavoriteUp", "", "Alt+Up"},
    {TFolderAction::MoveDown, {"FOLDER_VIEW", "MoveDown"}, "actMoveFavoriteDown", "", "Alt+Down"},
    {TFolderAction::CopyAddress, {"FOLDER_VIEW", "CopyAddress"}, "actCopyFavoriteAddress", "", "Ctrl+Shift+C"},
    {TFolderAction::Properties, {"FOLDER_VIEW", "Properties"}, "actFavoriteProperties", "properties", "Alt+Return; Alt+Enter"},
};
// clang-format on
static_assert(std::size(Rows) == static_cast<size_t>(TFolderAction::Count));

}  // namespace

TFolderView::TFolderView(TFolderKind &kind, TFolderEditor &editor, const TLanguage &language, TLook look,
                         TFolderModel::TShow show, QWidget *parent)
    : QTreeView(parent),
      m_kind(kind),
      m_editor(editor),
      m_language(language),
      m_look(look),
      m_model(kind, show),
      m_oneOpen(new TOneBranchOpen(*this)),
      m_menuName(QStringLiteral("pmFolderView")),
      m_fillMenu([this](QMenu &menu) { FillMenu(menu); }) {
  setHeaderHidden(true);
  setUniformRowHeights(true);
  setTextElideMode(Qt::ElideMiddle);
  setVerticalScrollMode(ScrollPerPixel);
  setSelectionMode(show == TFolderModel::TShow::FoldersOnly ? SingleSelection : ExtendedSelection);
  setEditTriggers(NoEditTriggers);
  setDragDropMode(DragDrop);
  setDropIndicatorShown(false);  // drawn here, since it depends on more than the row
  // A double click opens a file that holds something, and does not unfold it.
  if (kind.Parts() != nullptr) setExpandsOnDoubleClick(false);
  if (look == TLook::List) {
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setExpandsOnDoubleClick(false);
  }
  setModel(&m_model);
  MakeActions();
  m_hover.setSingleShot(true);
  connect(&m_hover, &QTimer::timeout, this, [this] {
    const auto pause = m_oneOpen->Pause();
    if (m_drop.folder.isValid() && m_drop.row < 0 && m_look != TLook::List) expand(m_drop.folder);
  });
  connect(&m_scroll, &QTimer::timeout, this,
          [this] { verticalScrollBar()->setValue(verticalScrollBar()->value() + m_scrollStep); });
  connect(this, &QTreeView::clicked, this, &TFolderView::OnClicked);
  connect(this, &QTreeView::doubleClicked, this, &TFolderView::OnDoubleClicked);
  connect(&m_model, &TFolderModel::AboutToChange, this, &TFolderView::KeepPlace);
  connect(&m_model, &TFolderModel::Changed, this, &TFolderView::ReturnToPlace);
  connect(&m_model, &TFolderModel::Read, this, &TFolderView::FollowReading);
  // Painting asks again for what the rows lead to.
  connect(&m_model, &TFolderModel::Read, viewport(), qOverload<>(&QWidget::update));
  connect(&m_model, &TFolderModel::Renamed, this, [this](const TFavorite &favorite, const QString &caption) {
    Do([=] { return FavoritesEdit::Rename(favorite.path, caption); });
  });
  connect(&m_editor, &TFolderEditor::Done, this, &TFolderView::OnDone);
  connect(&m_editor, &TFolderEditor::BusyChanged, this, [this](bool busy) {
    busy ? viewport()->setCursor(Qt::BusyCursor) : viewport()->unsetCursor();
    UpdateActions();
  });
}

void TFolderView::SetRoot(const QString &path, const QString &caption) {
  m_sought.clear();
  m_edited.clear();
  m_model.SetRoot(path, caption);
  if (m_look == TLook::TreeWithRoot) {
    expand(m_model.RootIndex());
    setCurrentIndex(m_model.RootIndex());
  } else {
    setRootIndex(m_model.RootIndex());
  }
  UpdateActions();
}

void TFolderView::SetOpensOnClick(bool opens) {
  m_opensOnClick = opens;
  setExpandsOnDoubleClick(!opens && m_look != TLook::List && m_kind.Parts() == nullptr);
}

void TFolderView::SetReadOnly() {
  m_isReadOnly = true;
  setDragDropMode(NoDragDrop);
}

// ---- what is shown ----

void TFolderView::Reveal(const QString &folder) {
  m_sought = {folder};
  m_isRevealing = true;
  m_isFileRevealed = false;
  FollowReading();
}

void TFolderView::RevealFile(const QString &path) {
  m_sought = {path};
  m_isRevealing = true;
  m_isFileRevealed = true;
  FollowReading();
}

void TFolderView::Select(const QStringList &paths) {
  m_sought = paths;
  m_isRevealing = false;
  FollowReading();
}

QModelIndex TFolderView::Sought(const QString &path) {
  const QModelIndex nearest = m_model.Nearest(path);
  if (!nearest.isValid()) return {};
  // In a list nothing is opened: there what is looked for stands, or does not.
  const bool isTree = m_look != TLook::List;
  if (m_model.At(nearest).path == path) {
    for (QModelIndex above = nearest.parent(); isTree && above.isValid(); above = above.parent()) expand(above);
    return nearest;
  }
  if (isTree && m_model.canFetchMore(nearest)) m_model.fetchMore(nearest);
  return {};
}

void TFolderView::FollowReading() {
  if (m_look != TLook::TreeWithRoot && hasFocus() && !currentIndex().isValid()) {
    setCurrentIndex(m_model.index(0, 0, rootIndex()));
  }
  if (m_sought.isEmpty()) return;
  // Of what is selected after a change several folders may open.
  const auto pause = m_oneOpen->Pause(!m_isRevealing);
  QModelIndexList found;
  for (const QString &path : std::as_const(m_sought)) {
    if (const QModelIndex index = Sought(path); index.isValid()) found.append(index);
  }
  if (found.size() < m_sought.size() && !m_model.IsIdle()) return;
  const QStringList sought = std::exchange(m_sought, {});
  if (m_isRevealing && found.isEmpty()) {
    const QModelIndex nearest = m_model.Nearest(sought.first());
    found.append(m_model.At(nearest).isFolder ? nearest : m_model.RootIndex());
  }
  if (found.isEmpty() || IsEditing()) return;
  QItemSelection selection;
  for (const QModelIndex &index : found) selection.select(index, index);
  selectionModel()->setCurrentIndex(found.first(), QItemSelectionModel::NoUpdate);
  selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
  if (m_isRevealing) expand(found.first());
  scrollTo(found.first());
  if (const QString edited = std::exchange(m_edited, {}); edited == sought.first()) Rename();
}

// What stands at the top stays there when rows above it come and go.
void TFolderView::KeepPlace() {
  m_top = verticalScrollBar()->value() > 0 ? indexAt(QPoint(0, 0)) : QModelIndex();
  if (m_top.isValid()) m_topOffset = visualRect(m_top).top();
}

void TFolderView::ReturnToPlace() {
  if (!m_top.isValid()) return;
  executeDelayedItemsLayout();
  const int moved = visualRect(m_top).top() - m_topOffset;
  if (moved != 0) verticalScrollBar()->setValue(verticalScrollBar()->value() + moved);
  m_top = QModelIndex();
}

TFavorite TFolderView::Current() const {
  return m_model.At(currentIndex());
}

QString TFolderView::Folder() const {
  if (m_isRevealing && !m_sought.isEmpty()) {
    return m_isFileRevealed ? m_sought.first().section(u'/', 0, -2) : m_sought.first();
  }
  QModelIndex current = currentIndex();
  if (m_look == TLook::List || !current.isValid()) return m_model.Root();
  while (!m_model.At(current).isFolder) current = current.parent();
  return m_model.At(current).path;
}

TFavorites TFolderView::Selected() const {
  QModelIndexList indexes = selectionModel()->selectedRows();
  indexes.removeIf([this](const QModelIndex &index) { return index == m_model.RootIndex() || m_model.IsPart(index); });
  const auto isAbove = [this](const QModelIndex &a, const QModelIndex &b) {
    if (a.parent() == b.parent()) return a.row() < b.row();
    return visualRect(a).top() < visualRect(b).top();
  };
  std::ranges::sort(indexes, isAbove);
  TFavorites selected;
  selected.reserve(indexes.size());
  for (const QModelIndex &index : std::as_const(indexes)) selected.append(m_model.At(index));
  return selected;
}

TFavorite TFolderView::Sole() const {
  const TFavorites selected = Selected();
  if (!SelectedParts().isEmpty()) return {};
  if (selected.size() == 1) return selected.first();
  return selected.isEmpty() && currentIndex() == m_model.RootIndex() ? Current() : TFavorite();
}

// ---- keys and mouse ----

void TFolderView::MakeActions() {
  for (const TActionRow &row : Rows) {
    auto *action = new QAction(m_language.Text(row.text), this);
    action->setObjectName(QLatin1String(row.name));
    if (*row.icon != '\0') action->setIcon(CommandIcon(row.icon));
    action->setShortcuts(QKeySequence::listFromString(QLatin1String(row.keys)));
    // Shown in the menu only: the keys are the view's own, whatever they mean in the window around it.
    action->setShortcutContext(Qt::WidgetShortcut);
    const TFolderAction which = row.action;
    connect(action, &QAction::triggered, this, [this, which] { Run(which); });
    m_actions[static_cast<size_t>(which)] = action;
  }
}

void TFolderView::UpdateActions() {
  const TFavorites selected = Selected();
  const bool areParts = ArePartsSelected();
  const bool isMixed = !areParts && !SelectedParts().isEmpty();
  const qsizetype count = areParts ? SelectedParts().size() : selected.size();
  const bool isOne = count == 1 && !areParts && !isMixed;
  const bool areFiles = count > 0 && !isMixed && std::ranges::none_of(selected, &TFavorite::isFolder);
  const auto enable = [this](TFolderAction action, bool isEnabled) { Action(action)->setEnabled(isEnabled); };
  enable(TFolderAction::Open, (areFiles && count <= MostOpened) || (isOne && selected.first().isFolder));
  enable(TFolderAction::OpenAll, Sole().isFolder);
  for (const TFolderAction action : {TFolderAction::OpenInNewTab, TFolderAction::OpenInBackground})
    enable(action, areFiles && count <= MostOpened);
  for (const TFolderAction action : {TFolderAction::Cut, TFolderAction::Copy}) enable(action, count > 0 && !isMixed);
  enable(TFolderAction::Delete, count > 0);
  for (const TFolderAction action : {TFolderAction::Rename, TFolderAction::Properties}) enable(action, isOne);
  enable(TFolderAction::CopyAddress, areFiles);
  enable(TFolderAction::Undo, m_editor.CanUndo());
  enable(TFolderAction::MoveUp, CanMoveBy(-1));
  enable(TFolderAction::MoveDown, CanMoveBy(1));
}

void TFolderView::FillMenu(QMenu &menu) {
  UpdateActions();
  const QMimeData *clip = QGuiApplication::clipboard()->mimeData();
  Action(TFolderAction::Paste)->setEnabled(clip != nullptr && FavoriteDrag::HasPaths(*clip));
  const bool isFolder = Action(TFolderAction::OpenAll)->isEnabled();
  const auto add = [&menu, this](std::initializer_list<TFolderAction> actions) {
    for (const TFolderAction action : actions) menu.addAction(Action(action));
    menu.addSeparator();
  };
  if (isFolder) {
    add({TFolderAction::Open, TFolderAction::OpenAll});
  } else {
    add({TFolderAction::Open, TFolderAction::OpenInNewTab, TFolderAction::OpenInBackground});
  }
  add({TFolderAction::Cut, TFolderAction::Copy, TFolderAction::Paste, TFolderAction::CopyAddress});
  add({TFolderAction::Rename, TFolderAction::Delete, TFolderAction::NewFolder, TFolderAction::Undo});
  add({TFolderAction::MoveUp, TFolderAction::MoveDown, TFolderAction::SortByName});
  add({TFolderAction::Properties});
}

void TFolderView::SetMenu(const QString &name, std::function<void(QMenu &)> fill) {
  m_menuName = name;
  m_fillMenu = std::move(fill);
}

void TFolderView::ShowMenu(const QPoint &globalPosition) {
  if (m_menu != nullptr || m_isReadOnly) return;
  m_menu = new QMenu(this);
  m_menu->setObjectName(m_menuName);
  m_menu->setAttribute(Qt::WA_DeleteOnClose);
  m_fillMenu(*m_menu);
  m_menu->popup(globalPosition);
}

void TFolderView::contextMenuEvent(QContextMenuEvent *event) {
  if (event->reason() == QContextMenuEvent::Mouse) {
    const QModelIndex index = indexAt(viewport()->mapFromGlobal(event->globalPos()));
    if (!index.isValid()) clearSelection();
    ShowMenu(event->globalPos());
  } else {
    const QRect row = visualRect(currentIndex());
    ShowMenu(viewport()->mapToGlobal(row.isValid() ? row.center() : QPoint(0, 0)));
  }
}

QAction *TFolderView::ActionFor(const QKeyEvent &event) const {
  // In the box of a name the keys mean its text.
  if (m_isReadOnly || IsEditing()) return nullptr;
  const QKeySequence pressed(int(event.modifiers() & ~Qt::KeypadModifier) | event.key());
  for (QAction *action : m_actions) {
    if (action->shortcuts().contains(pressed)) return action;
  }
  return nullptr;
}

bool TFolderView::event(QEvent *event) {
  if (event->type() == QEvent::ShortcutOverride && ActionFor(static_cast<QKeyEvent &>(*event)) != nullptr) {
    event->accept();
    return true;
  }
  return QTreeView::event(event);
}

void TFolderView::keyPressEvent(QKeyEvent *event) {
  if (QAction *action = ActionFor(*event)) {
    UpdateActions();
    Action(TFolderAction::Paste)->setEnabled(true);  // whether there is anything is seen then
    if (action->isEnabled()) action->trigger();
    event->accept();
  } else if (event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier) {
    QContextMenuEvent wish(QContextMenuEvent::Keyboard, QPoint(), QPoint());
    contextMenuEvent(&wish);
    event->accept();
  } else if (event->key() == Qt::Key_Escape && !IsEditing()) {
    event->ignore();  // the window's
  } else {
    m_sought.clear();  // the user goes elsewhere
    QTreeView::keyPressEvent(event);
  }
}

void TFolderView::mousePressEvent(QMouseEvent *event) {
  if (event->button() == Qt::MiddleButton) {
    m_middlePressed = indexAt(event->position().toPoint());
    event->accept();
    return;
  }
  m_sought.clear();
  QTreeView::mousePressEvent(event);
}

void TFolderView::mouseReleaseEvent(QMouseEvent *event) {
  if (event->button() != Qt::MiddleButton) {
    QTreeView::mouseReleaseEvent(event);
    return;
  }
  const QModelIndex index = indexAt(event->position().toPoint());
  const TFavorite favorite = m_model.At(index);
  const bool isClick = index.isValid() && m_middlePressed == index;
  m_middlePressed = QModelIndex();
  event->accept();
  if (!isClick || favorite.isFolder) return;
  if (m_model.IsPart(index)) {
    m_kind.Parts()->Open(m_model.PartAt(index).part, TOpenPlace::BackgroundTab);
  } else {
    m_kind.Open(favorite, TOpenPlace::BackgroundTab);
  }
}

void TFolderView::OnClicked(const QModelIndex &index) {
  // With Shift and Ctrl more is selected.
  const bool opens = m_opensOnClick || m_model.IsPart(index);
  if (!opens || QGuiApplication::keyboardModifiers() != Qt::NoModifier) return;
  if (m_model.At(index).isFolder) {
    setExpanded(index, !isExpanded(index));
  } else {
    Open(TOpenPlace::BySetting);
  }
}

void TFolderView::OnDoubleClicked(const QModelIndex &index) {
  if (m_opensOnClick || m_model.IsPart(index)) return;
  if (!m_model.At(index).isFolder || m_look == TLook::List) {
    Open(TOpenPlace::BySetting);
  } else if (m_kind.Parts() != nullptr) {
    setExpanded(index, !isExpanded(index));
  }
}

void TFolderView::currentChanged(const QModelIndex &current, const QModelIndex &previous) {
  QTreeView::currentChanged(current, previous);
  Q_EMIT CurrentChanged();
}

void TFolderView::dataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight, const QList<int> &roles) {
  // A picture that comes is not to put the old name back into the box where another is being typed.
  if (roles.contains(Qt::DecorationRole)) {
    update(topLeft);
  } else {
    QTreeView::dataChanged(topLeft, bottomRight, roles);
  }
}

void TFolderView::selectionChanged(const QItemSelection &selected, const QItemSelection &deselected) {
  QTreeView::selectionChanged(selected, deselected);
  if (m_actions.back() != nullptr) UpdateActions();
}
