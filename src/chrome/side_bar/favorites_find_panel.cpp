#include "chrome/side_bar/favorites_find_panel.h"

#include <QAction>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>

#include "actions/actions.h"
#include "chrome/folder_view/folder_editor.h"
#include "chrome/folder_view/folder_kind.h"
#include "chrome/side_bar/page_parts.h"
#include "config/language.h"
#include "config/settings.h"
#include "ui/close_button.h"

TFavoritesFindPanel::TFavoritesFindPanel(const TLanguage &language, TSettings &settings, TFolderKind &kind,
                                         TFolderEditor &editor, QWidget *parent)
    : QWidget(parent),
      m_language(language),
      m_settings(settings),
      m_kind(kind),
      m_editor(editor),
      m_results(language, kind, this) {
  MakeParts();
  MakeActions();
  for (QWidget *watched : {static_cast<QWidget *>(m_text), static_cast<QWidget *>(m_list), m_list->viewport()}) {
    watched->installEventFilter(this);
  }
  connect(m_text, &QLineEdit::returnPressed, this, &TFavoritesFindPanel::spdFindFavoritesClick);
  connect(m_find, &QToolButton::clicked, this, &TFavoritesFindPanel::spdFindFavoritesClick);
  connect(&m_finder, &TFavoritesFinder::Found, this, &TFavoritesFindPanel::Take);
  connect(&m_finder, &TFavoritesFinder::Finished, this, &TFavoritesFindPanel::Finish);
  connect(m_list, &QTreeView::clicked, this, [this](const QModelIndex &index) {
    const Qt::KeyboardModifiers keys = QGuiApplication::keyboardModifiers();
    OpenRow(index, keys.testFlag(Qt::ControlModifier) ? TOpenPlace::BackgroundTab
                   : keys.testFlag(Qt::ShiftModifier) ? TOpenPlace::NewTab
                                                      : TOpenPlace::BySetting);
  });
}

void TFavoritesFindPanel::MakeParts() {
  const TLanguage &language = m_language;
  m_text = PageParts::MakeField(language.Text("FAVORITES_PAGE", "FindText"), "edtFindFavorites", this);
  m_find = PageParts::MakeIconButton(language.Text("FAVORITES_PAGE", "FindHint"), "find", "spdFindFavorites", this);
  m_list = PageParts::MakeList(language.Text("FAVORITES_PAGE", "ResultsName"), "lvFindFavorites", m_results, this);
  m_list->setRootIsDecorated(false);
  m_list->setAllColumnsShowFocus(true);
  m_list->setDragEnabled(true);
  // Both have room in the narrowest bar; hints show the rest.
  m_list->header()->setStretchLastSection(false);
  m_list->header()->setSectionResizeMode(QHeaderView::Stretch);
  m_list->header()->setMinimumSectionSize(1);
  m_head = new QWidget(this);
  m_count = new QLabel(m_head);
  m_count->setObjectName(QStringLiteral("lblFoundFavorites"));
  m_close = new TCloseButton(language.Text("FAVORITES_PAGE", "CloseResults"), m_head);
  m_close->setObjectName(QStringLiteral("spdCloseFoundFavorites"));
  const int small = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
  m_close->setIconSize(QSize(small, small));
  connect(m_close, &QToolButton::clicked, this, [this] {
    Close();
    Q_EMIT Left();
  });

  auto *find = new QHBoxLayout;
  find->addWidget(m_text, 1);
  find->addWidget(m_find);
  auto *head = new QHBoxLayout(m_head);
  head->setContentsMargins(m_head->fontMetrics().averageCharWidth() / 2, 0, 0, 0);
  head->addWidget(m_count, 1);
  head->addWidget(m_close);
  auto *layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addLayout(find);
  layout->addWidget(m_head);
  layout->addWidget(m_list, 1);
  Close();
}

QWidgetList TFavoritesFindPanel::TabOrder() const {
  return {m_text, m_find, m_list, m_close};
}

// ---- commands ----

void TFavoritesFindPanel::MakeActions() {
  struct TRow {
    TTextKey text;
    const char *name;
    const char *icon;  // empty for none
    const char *keys;  // portable; those of the tree where it has the same
  };
  // In the order of the enumeration.
  static constexpr TRow Rows[] = {
      {{"FOLDER_VIEW", "Open"}, "actOpenFound", "open", "Return; Enter"},
      {{"FOLDER_VIEW", "OpenInNewTab"}, "actOpenFoundInNewTab", "new_tab", "Shift+Return; Shift+Enter"},
      {{"FOLDER_VIEW", "OpenInBackground"}, "actOpenFoundInBackground", "", "Ctrl+Return; Ctrl+Enter"},
      {{"FAVORITES_PAGE", "Reveal"}, "actRevealFound", "", "Ctrl+Up"},
      {{"FOLDER_VIEW", "CopyAddress"}, "actCopyFoundAddress", "copy", "Ctrl+C; Ctrl+Ins; Ctrl+Shift+C"},
      {{"FOLDER_VIEW", "Delete"}, "actDeleteFound", "close_tab", "Del"},
      {{"FOLDER_VIEW", "Undo"}, "actUndoFound", "", "Ctrl+Z; Alt+Backspace"},
      {{"FOLDER_VIEW", "Properties"}, "actFoundProperties", "properties", "Alt+Return; Alt+Enter"},
  };
  static_assert(std::size(Rows) == CommandCount);
  for (int i = 0; i < CommandCount; ++i) {
    const TRow &row = Rows[i];
    auto *action = new QAction(m_language.Text(row.text), this);
    action->setObjectName(QLatin1String(row.name));
    if (*row.icon != '\0') action->setIcon(CommandIcon(row.icon));
    action->setShortcuts(QKeySequence::listFromString(QLatin1String(row.keys)));
    // Shown in the menu only: the keys are the list's own, whatever they mean in the window around it.
    action->setShortcutContext(Qt::WidgetShortcut);
    connect(action, &QAction::triggered, this, [this, i] { Run(TCommand(i)); });
    m_actions[size_t(i)] = action;
  }
}

void TFavoritesFindPanel::UpdateActions() {
  const TFoundFavorite *one = m_results.At(m_list->currentIndex());
  for (QAction *action : m_actions) action->setEnabled(one != nullptr);
  m_actions[Reveal]->setEnabled(one != nullptr && one->favorite.path.startsWith(m_shownFolder + u'/'));
  m_actions[Undo]->setEnabled(m_editor.CanUndo());
}

void TFavoritesFindPanel::Run(TCommand command) {
  const QModelIndex index = m_list->currentIndex();
  if (command == Undo) return m_editor.Undo();
  const TFoundFavorite *found = m_results.At(index);
  if (found == nullptr) return;
  const TFoundFavorite one = *found;
  switch (command) {
    case Open:
      return OpenRow(index, TOpenPlace::BySetting);
    case OpenInNewTab:
      return OpenRow(index, TOpenPlace::NewTab);
    case OpenInBackground:
      return OpenRow(index, TOpenPlace::BackgroundTab);
    case Reveal:
      Q_EMIT RevealWanted(one.favorite.path);
      return;
    case CopyAddress:
      QGuiApplication::clipboard()->setText(one.address.isEmpty() ? one.favorite.path : one.address);
      return;
    case Delete: {
      const auto trash = [path = one.favorite.path] { return FavoritesEdit::Trash({path}); };
      const QPointer<TFavoritesFindPanel> self(this);
      // Before it is looked for again: the next press of the key is for the next row.
      m_editor.Do(trash, this, [self, row = QPersistentModelIndex(index)](const TFavoritesChange &change) {
        if (!self || !change.IsGood()) return;
        self->m_results.Remove(row);
        self->ShowCount();
      });
      return;
    }
    case Properties:
      Q_EMIT PropertiesWanted(one.favorite);
      return;
    default:
      return;
  }
}

void TFavoritesFindPanel::OpenRow(const QModelIndex &index, TOpenPlace place) {
  if (const TFoundFavorite *one = m_results.At(index)) m_kind.Open(TFavorite(one->favorite), place);
}

void TFavoritesFindPanel::ShowMenu(const QPoint &place) {
  UpdateActions();
  if (m_menu != nullptr || !m_actions[Open]->isEnabled()) return;
  m_menu = new QMenu(this);
  m_menu->setObjectName(QStringLiteral("pmFoundFavorite"));
  m_menu->setAttribute(Qt::WA_DeleteOnClose);
  m_menu->addActions({m_actions[Open], m_actions[OpenInNewTab], m_actions[OpenInBackground]});
  m_menu->addSeparator();
  m_menu->addActions({m_actions[Reveal], m_actions[CopyAddress]});
  m_menu->addSeparator();
  m_menu->addActions({m_actions[Delete], m_actions[Undo]});
  m_menu->addSeparator();
  m_menu->addAction(m_actions[Properties]);
  m_menu->popup(place);
}

// ---- keys and mouse ----

QAction *TFavoritesFindPanel::ActionFor(const QKeyEvent &event) const {
  const QKeySequence pressed(int(event.modifiers() & ~Qt::KeypadModifier) | event.key());
  for (QAction *action : m_actions) {
    if (action->shortcuts().contains(pressed)) return action;
  }
  return nullptr;
}

bool TFavoritesFindPanel::ListKeyDown(QKeyEvent &event) {
  if (QAction *action = ActionFor(event)) {
    UpdateActions();
    if (action->isEnabled()) action->trigger();
    return true;
  }
  if (event.key() != Qt::Key_F10 || event.modifiers() != Qt::ShiftModifier) return false;
  ShowMenu(m_list->viewport()->mapToGlobal(m_list->visualRect(m_list->currentIndex()).center()));
  return true;
}

void TFavoritesFindPanel::OnContextMenu(const QContextMenuEvent &event) {
  // The mouse's menu is about the row below it, the keyboard's about the current one.
  const bool isMouse = event.reason() == QContextMenuEvent::Mouse;
  if (isMouse) m_list->setCurrentIndex(m_list->indexAt(m_list->viewport()->mapFromGlobal(event.globalPos())));
  const QPoint middle = m_list->visualRect(m_list->currentIndex()).center();
  ShowMenu(isMouse ? event.globalPos() : m_list->viewport()->mapToGlobal(middle));
}

bool TFavoritesFindPanel::OnMiddleButton(const QMouseEvent &event) {
  if (event.button() != Qt::MiddleButton) return false;
  const QModelIndex index = m_list->indexAt(event.position().toPoint());
  if (event.type() == QEvent::MouseButtonPress) {
    m_middlePressed = index;
  } else if (index.isValid() && std::exchange(m_middlePressed, QModelIndex()) == index) {
    OpenRow(index, TOpenPlace::BackgroundTab);
  }
  return true;
}

bool TFavoritesFindPanel::eventFilter(QObject *watched, QEvent *event) {
  const bool isField = watched == m_text;
  switch (event->type()) {
    case QEvent::ContextMenu:
      if (!isField) OnContextMenu(*static_cast<QContextMenuEvent *>(event));
      return !isField;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
      return !isField && OnMiddleButton(*static_cast<QMouseEvent *>(event));
    case QEvent::ShortcutOverride:
      // The window has another use for some of these keys.
      if (ClaimEscape(*event)) return true;
      if (isField || ActionFor(*static_cast<QKeyEvent *>(event)) == nullptr) return false;
      event->accept();
      return true;
    case QEvent::KeyPress:
      break;
    default:
      return false;
  }
  auto &key = *static_cast<QKeyEvent *>(event);
  if (key.key() == Qt::Key_Escape) {
    Close();
    Q_EMIT Left();
    return true;
  }
  if (!isField) return ListKeyDown(key);
  if (key.key() != Qt::Key_Down || !HasResults()) return false;
  m_list->setFocus(Qt::OtherFocusReason);
  if (!m_list->currentIndex().isValid()) m_list->setCurrentIndex(m_results.index(0, 0));
  return true;
}

// ---- searching ----

void TFavoritesFindPanel::spdFindFavoritesClick() {
  const QString text = m_text->text();
  // Nothing to look for leaves what was found.
  if (text.isEmpty()) return;
  m_sought = text;
  m_isAgain = false;
  m_results.Reset();
  Begin();
  m_head->show();
  m_list->show();
  Q_EMIT ResultsShown(true);
}

void TFavoritesFindPanel::Begin() {
  m_isStale = false;
  m_finder.Find(FavoritesFolder::Path(m_settings.Store(), FavoritesFolder::TPlace::ShellFolders), m_sought);
  ShowCount();
}

void TFavoritesFindPanel::Refresh() {
  if (!HasResults()) return;
  // What is under way may have looked before the change.
  m_isStale = m_finder.IsSearching();
  if (m_isStale) return;
  m_isAgain = true;
  m_again.clear();
  Begin();
}

void TFavoritesFindPanel::Take(const TFoundFavorites &found) {
  if (m_isAgain) {
    m_again += found;
    return;
  }
  m_results.Add(found);
  ShowCount();
}

void TFavoritesFindPanel::Finish() {
  if (m_isAgain) {
    m_results.Replace(std::exchange(m_again, {}));
  } else {
    m_results.Finish();
  }
  ShowCount();
  if (m_isStale) Refresh();
}

void TFavoritesFindPanel::ShowCount() {
  const bool isFirst = m_finder.IsSearching() && !m_isAgain;
  m_count->setText(isFirst ? m_language.Text("FAVORITES_PAGE", "Searching")
                           : m_language.Text("FAVORITES_PAGE", "FoundCount").arg(m_results.Count()));
}

void TFavoritesFindPanel::Close() {
  m_finder.Cancel();
  m_sought.clear();
  m_again.clear();
  m_results.Reset();
  m_head->hide();
  m_list->hide();
  Q_EMIT ResultsShown(false);
}
