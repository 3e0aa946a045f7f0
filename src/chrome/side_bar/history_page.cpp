#include "chrome/side_bar/history_page.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QProgressBar>
#include <QScrollBar>
#include <QSplitter>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>

#include "chrome/side_bar/history_results.h"
#include "chrome/side_bar/page_parts.h"
#include "chrome/side_bar/visit_properties.h"
#include "config/language.h"
#include "config/settings.h"
#include "ui/confirm_dialog.h"
#include "ui/dialog_gate.h"
#include "ui/flow_layout.h"
#include "ui/one_branch_open.h"
#include "ui/shown_text.h"

namespace {

constexpr std::chrono::milliseconds RefreshPause{500};
constexpr std::chrono::milliseconds RemovalLook{100};
constexpr qint64 ShowRemovalAfter = 1000;  // milliseconds
constexpr qsizetype MostByWords = 1000;
constexpr int MostLinesLookedAt = 500;  // more do not fit on any screen
constexpr int ButtonDistance = 4;       // pixels

}  // namespace

THistoryPage::THistoryPage(const TLanguage &language, TSettings &settings, THistoryStore &history,
                           THistoryModel::TPageIcon icon, QWidget *parent)
    : QWidget(parent),
      m_language(language),
      m_settings(settings),
      m_store(history),
      m_history(history),
      m_model(language, history, std::move(icon)),
      m_results(new THistoryResults(language, m_history, this)) {
  MakeParts();
  MakeMenu();
  Connect();
}

THistoryPage::~THistoryPage() {
  // They look at the models, which go before them.
  m_tree->setModel(nullptr);
  m_found->setModel(nullptr);
  delete m_results;
}

void THistoryPage::MakeParts() {
  const TLanguage &language = m_language;
  m_order = new QComboBox(this);
  m_order->setObjectName(QStringLiteral("cboHistoryOrder"));
  m_order->setAccessibleName(language.Text("HISTORY", "OrderName"));
  m_order->addItems({language.Text("HISTORY", "OrderByDay"), language.Text("HISTORY", "OrderByLastVisit"),
                     language.Text("HISTORY", "OrderByVisits")});
  // As wide as the bar, whatever its items would like.
  m_order->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  m_tree = PageParts::MakeList(language.Text("HISTORY", "TreeName"), "shHistory", m_model, this);
  m_tree->setHeaderHidden(true);
  m_text = PageParts::MakeField(language.Text("HISTORY", "FindText"), "edtFindHistory", this);
  m_find = PageParts::MakeIconButton(language.Text("HISTORY", "FindHint"), "find", "spdFindHistory", this);
  m_words = PageParts::MakeField(language.Text("HISTORY", "FindWords"), "edtFindWords", this);
  m_found = PageParts::MakeList(language.Text("HISTORY", "ResultsName"), "lvFindHistory", *m_results, this);
  m_found->setRootIsDecorated(false);
  m_found->setAllColumnsShowFocus(true);
  m_found->header()->setSortIndicator(-1, Qt::AscendingOrder);
  m_found->setSortingEnabled(true);
  m_found->hide();
  m_clear = PageParts::MakeButton(language.Text("HISTORY", "Clear"), "spdClearHistory", this);
  m_forget = PageParts::MakeButton(language.Text("HISTORY", "Forget"), "spdForgetHistory", this);
  m_progress = new QProgressBar(this);
  m_progress->setObjectName(QStringLiteral("pgbHistory"));
  m_progress->setAccessibleName(language.Text("HISTORY", "Removing"));
  m_progress->setFormat(language.Text("HISTORY", "Removing"));
  m_progress->hide();

  auto *find = new QHBoxLayout;
  find->addWidget(m_text);
  find->addWidget(m_find);
  auto *buttons = new TFlowLayout(ButtonDistance);
  buttons->addWidget(m_clear);
  buttons->addWidget(m_forget);
  auto *splitter = new QSplitter(Qt::Vertical, this);
  splitter->setChildrenCollapsible(false);
  splitter->addWidget(m_tree);
  splitter->addWidget(m_found);
  auto *layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(m_order);
  layout->addLayout(find);
  layout->addWidget(m_words);
  layout->addWidget(splitter, 1);
  layout->addWidget(m_progress);
  layout->addLayout(buttons);
  setFocusProxy(m_tree);
  // The Tab key comes from the page to the tree, so that what stood before it would never be reached.
  const QWidgetList order{m_tree, m_order, m_text, m_find, m_words, m_found, m_clear, m_forget};
  for (qsizetype i = 1; i < order.size(); ++i) setTabOrder(order.at(i - 1), order.at(i));
}

void THistoryPage::MakeMenu() {
  const TLanguage &language = m_language;
  m_menu = new QMenu(this);
  m_menu->setObjectName(QStringLiteral("pmHistory"));
  const auto add = [this](const QString &text, const char *name, auto handler) {
    QAction *action = m_menu->addAction(text);
    action->setObjectName(QLatin1String(name));
    connect(action, &QAction::triggered, this, handler);
  };
  add(language.Global("Open"), "pmHistoryOpen", [this] { OpenIndex(m_target, TPlace::CurrentTab); });
  add(language.Text("FAVORITES", "OpenInNewTab"), "pmHistoryOpenInNewWindow",
      [this] { OpenIndex(m_target, TPlace::NewTab); });
  add(language.Text("FAVORITES", "OpenInBackground"), "pmHistoryOpenInBackground",
      [this] { OpenIndex(m_target, TPlace::BackgroundTab); });
  add(language.Text("FAVORITES", "Delete"), "pmHistoryDelete", [this] { Delete(m_target); });
  m_menu->addSeparator()->setObjectName(QStringLiteral("pmHistoryLine"));
  add(language.Text("FAVORITES", "CopyAddress"), "pmHistoryCopy", [this] { Copy(m_target); });
  add(language.Text("FAVORITES", "Properties"), "pmHistoryProperties", [this] { ShowProperties(m_target); });
  m_sortMenu = m_menu->addMenu(language.Text("HISTORY", "SortBy"));
  m_sortMenu->menuAction()->setObjectName(QStringLiteral("pmHistorySort"));
  for (int column = 0; column < THistoryResults::ColumnCount; ++column) {
    const QString text = m_results->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
    connect(m_sortMenu->addAction(MenuText(text)), &QAction::triggered, this, [this, column] {
      // Once more turns it round, as a click on the header does.
      const QHeaderView &header = *m_found->header();
      const bool isUp = header.sortIndicatorSection() == column && header.sortIndicatorOrder() == Qt::AscendingOrder;
      m_found->sortByColumn(column, isUp ? Qt::DescendingOrder : Qt::AscendingOrder);
    });
  }
}

void THistoryPage::Connect() {
  connect(m_order, &QComboBox::activated, this, [this](int order) { m_model.SetOrder(THistoryModel::TOrder(order)); });
  for (QTreeView *view : {m_tree, m_found}) {
    view->installEventFilter(this);
    connect(view, &QWidget::customContextMenuRequested, this,
            [this, view](const QPoint &place) { ShowMenu(*view, place); });
  }
  m_tree->viewport()->installEventFilter(this);
  m_text->installEventFilter(this);
  m_words->installEventFilter(this);
  connect(m_found, &QAbstractItemView::doubleClicked, this,
          [this](const QModelIndex &index) { OpenIndex(index, TPlace::BySetting); });
  connect(m_text, &QLineEdit::returnPressed, this, &THistoryPage::spdFindHistoryClick);
  connect(m_find, &QToolButton::clicked, this, &THistoryPage::spdFindHistoryClick);
  connect(m_words, &QLineEdit::textEdited, this, &THistoryPage::FindWords);
  connect(m_clear, &QToolButton::clicked, this, &THistoryPage::spdClearHistoryClick);
  connect(m_forget, &QToolButton::clicked, this, &THistoryPage::spdForgetHistoryClick);
  connect(&m_model, &THistoryModel::Read, this, &THistoryPage::ReadWhatShows);
  connect(m_tree, &QTreeView::expanded, this, &THistoryPage::ReadWhatShows);
  connect(m_tree->verticalScrollBar(), &QScrollBar::valueChanged, this, &THistoryPage::ReadWhatShows);
  m_refresh.setSingleShot(true);
  m_refresh.setInterval(RefreshPause);
  connect(&m_refresh, &QTimer::timeout, this, &THistoryPage::Refresh);
  // From the writer's thread. What comes within the pause is shown together.
  connect(&m_store, &THistoryStore::Written, this, [this] {
    if (!m_refresh.isActive()) m_refresh.start();
  });
  m_removal.setInterval(RemovalLook);
  connect(&m_removal, &QTimer::timeout, this, &THistoryPage::ShowRemoval);
}

void THistoryPage::FocusTree() {
  m_tree->setFocus(Qt::OtherFocusReason);
}

void THistoryPage::showEvent(QShowEvent *event) {
  QWidget::showEvent(event);
  if (!std::exchange(m_wasShown, true)) {
    auto *oneOpen = new TOneBranchOpen(*m_tree);
    m_settings.Apply(Setting::HBAutoExpand, oneOpen,
                     [this, oneOpen] { oneOpen->SetOn(m_settings.Get(Setting::HBAutoExpand)); });
    m_model.SetOrder(THistoryModel::TOrder(m_order->currentIndex()));
  } else if (m_isStale) {
    Refresh();
  }
}

void THistoryPage::Refresh() {
  m_isStale = !isVisible();
  if (m_isStale) return;
  // What takes long to read is not asked for again before it is there.
  m_model.IsAtRest() ? m_model.Refresh() : m_refresh.start();
}

QString THistoryPage::AddressOf(const QModelIndex &index) const {
  if (index.model() == m_results) {
    const TUrlHistoryEntry *entry = m_results->EntryAt(index);
    return entry != nullptr ? entry->address : QString();
  }
  const auto page = m_model.PageAt(index);
  return page ? page->address : QString();
}

void THistoryPage::Open(const QString &address, TPlace place) {
  if (address.isEmpty()) return;
  if (place == TPlace::BySetting) {
    place = m_settings.Get(Setting::HistoryNewWin) ? TPlace::NewTab : TPlace::CurrentTab;
  }
  if (place == TPlace::CurrentTab) Q_EMIT OpenInCurrentTab(address);
  if (place == TPlace::NewTab) Q_EMIT OpenInNewTab(address);
  if (place == TPlace::BackgroundTab) Q_EMIT OpenInBackgroundTab(address);
}

void THistoryPage::OpenIndex(const QModelIndex &index, TPlace place) {
  if (index.isValid() && index.model() == &m_model && !m_model.PageAt(index)) {
    m_tree->setExpanded(index, !m_tree->isExpanded(index));
  } else {
    Open(AddressOf(index), place);
  }
}

void THistoryPage::Delete(const QModelIndex &index) {
  if (!index.isValid()) return;
  if (index.model() == m_results) {
    const TUrlHistoryEntry *entry = m_results->EntryAt(index);
    if (entry == nullptr) return;
    const QString address = entry->address;
    m_results->RemoveEntry(m_results->index(index.row(), 0));
    Q_EMIT Forgotten({address});
  } else if (const auto page = m_model.PageAt(index)) {
    m_store.Remove(page->address);
    m_searchesAgain = true;
    Q_EMIT Forgotten({page->address});
  } else {
    // The span of now: the tree may be read anew while the question is open.
    const THistorySpan span = m_model.SpanAt(index);
    const QString prompt = span.site.isEmpty() ? m_language.Text("HISTORY", "DeletePeriodPrompt")
                                               : m_language.Text("HISTORY", "DeleteSitePrompt");
    const QString period = (span.site.isEmpty() ? index : index.parent()).data().toString();
    const QPointer<THistoryPage> self(this);
    const TAnswer answer = ShowConfirm(
        window(), {.caption = QApplication::applicationDisplayName(),
                   .firstLine = span.site.isEmpty() ? prompt.arg(period) : prompt.arg(index.data().toString(), period),
                   .ok = m_language.Text("FAVORITES", "Delete"),
                   .cancel = m_language.Global("Cancel"),
                   .isRisky = true});
    if (!self || !answer.accepted) return;
    RemoveSpan(span);
  }
  FollowRemoval();
}

void THistoryPage::Copy(const QModelIndex &index) const {
  if (const QString address = AddressOf(index); !address.isEmpty()) QGuiApplication::clipboard()->setText(address);
}

void THistoryPage::ShowProperties(const QModelIndex &index) {
  const QString address = AddressOf(index);
  if (address.isEmpty() || DialogGate::IsClosed()) return;
  const auto page = m_store.Find(address);
  if (!page) return;
  auto *dialog = new TfrmVisitProperties(m_language, *page, window());
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->open();
}

void THistoryPage::ShowMenu(QAbstractItemView &view, const QPoint &place) {
  // The keyboard's menu is about the current line, wherever the toolkit puts it.
  const QModelIndex index = std::exchange(m_isMenuByKey, false) ? view.currentIndex() : view.indexAt(place);
  const bool isTree = &view == m_tree;
  const bool isLeaf = !AddressOf(index).isEmpty();
  if (!index.isValid() || (!isTree && !isLeaf)) return;
  view.setCurrentIndex(index);
  m_target = index.siblingAtColumn(0);
  for (QAction *action : m_menu->actions()) {
    const QString name = action->objectName();
    const bool isAlways = name == QLatin1String("pmHistoryOpen") || name == QLatin1String("pmHistoryDelete");
    action->setVisible(isAlways || isLeaf);
  }
  m_sortMenu->menuAction()->setVisible(!isTree);
  const QRect line = view.visualRect(index);
  const QPoint shown = line.contains(place) ? place : line.center();
  m_menu->popup(view.viewport()->mapToGlobal(shown));
}

bool THistoryPage::shHistoryMouseDown(const QMouseEvent &event) {
  const QPoint place = event.position().toPoint();
  const QModelIndex index = m_tree->indexAt(place);
  // Beside the text is what opens and closes a branch.
  if (!index.isValid() || !m_tree->visualRect(index).contains(place)) return false;
  const bool isBackground = event.button() == Qt::MiddleButton || event.modifiers().testFlag(Qt::ControlModifier);
  if (event.button() != Qt::LeftButton && event.button() != Qt::MiddleButton) return false;
  m_tree->setFocus(Qt::MouseFocusReason);
  m_tree->setCurrentIndex(index);
  OpenIndex(index, isBackground ? TPlace::BackgroundTab : TPlace::BySetting);
  return true;
}

bool THistoryPage::ListKeyDown(QAbstractItemView &view, const QKeyEvent &event) {
  const QModelIndex index = view.currentIndex();
  switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      OpenIndex(index, event.modifiers().testFlag(Qt::ControlModifier) ? TPlace::BackgroundTab : TPlace::BySetting);
      return true;
    case Qt::Key_Delete:
      Delete(index);
      return true;
    case Qt::Key_F10:  // desktops turn the menu key alone into a menu's event
      if (event.modifiers() != Qt::ShiftModifier) return false;
      m_isMenuByKey = true;
      ShowMenu(view, {});
      return true;
    default:
      break;
  }
  if (!event.matches(QKeySequence::Copy)) return false;
  Copy(index);
  return true;
}

bool THistoryPage::eventFilter(QObject *watched, QEvent *event) {
  if (watched == m_tree->viewport()) {
    return event->type() == QEvent::MouseButtonPress && shHistoryMouseDown(*static_cast<QMouseEvent *>(event));
  }
  if (event->type() == QEvent::ContextMenu) {
    m_isMenuByKey = static_cast<QContextMenuEvent *>(event)->reason() == QContextMenuEvent::Keyboard;
  }
  if (event->type() != QEvent::KeyPress && event->type() != QEvent::ShortcutOverride) return false;
  const auto &key = *static_cast<QKeyEvent *>(event);
  const bool isField = watched == m_text || watched == m_words;
  if (event->type() == QEvent::ShortcutOverride) {
    // The window has another use for some of these keys.
    const bool isOurs =
        key.key() == Qt::Key_Escape || (!isField && (key.key() == Qt::Key_Delete || key.key() == Qt::Key_Return ||
                                                     key.key() == Qt::Key_Enter || key.matches(QKeySequence::Copy)));
    if (isOurs) event->accept();
    return isOurs;
  }
  if (key.key() == Qt::Key_Escape) {
    // Where there is no search to end it is the bar's.
    const bool hasSearch = m_found->isVisible() || !m_text->text().isEmpty() || !m_words->text().isEmpty();
    hasSearch ? EndSearch() : event->ignore();
    return true;
  }
  if (!isField) return ListKeyDown(watched == m_tree ? *m_tree : *m_found, key);
  const bool isToList = key.key() == Qt::Key_Down || (watched == m_words && key.key() == Qt::Key_Return);
  if (!isToList || !m_found->isVisible()) return false;
  m_found->setFocus(Qt::OtherFocusReason);
  if (!m_found->currentIndex().isValid()) m_found->setCurrentIndex(m_results->index(0, 0));
  return true;
}

void THistoryPage::spdFindHistoryClick() {
  const QString text = m_text->text();
  if (text.isEmpty()) return;
  m_search = [this, text] { m_history.Enumerate(text, 0); };
  SearchAgain();
}

void THistoryPage::FindWords() {
  const QString text = m_words->text();
  if (text.trimmed().isEmpty()) {
    EndSearch();
    return;
  }
  m_search = [this, text] { m_history.EnumerateWords(text, MostByWords); };
  SearchAgain();
}

void THistoryPage::SearchAgain() {
  if (!m_search) return;
  m_history.SetDays(m_settings.Get(Setting::HistoryDays));
  m_results->Reset();
  m_search();
  m_found->show();
}

void THistoryPage::EndSearch() {
  m_search = {};
  m_results->Reset();
  m_history.Cancel();
  if (m_found->hasFocus()) FocusTree();
  m_found->hide();
}

void THistoryPage::spdClearHistoryClick() {
  const QPointer<THistoryPage> self(this);
  const TAnswer answer = ShowConfirm(window(), {.caption = QApplication::applicationDisplayName(),
                                                .firstLine = m_language.Global("ClearGlobalHistory"),
                                                .ok = m_language.Global("Yes"),
                                                .cancel = m_language.Global("No"),
                                                .isRisky = true});
  if (!self || !answer.accepted) return;
  ClearAll();
}

void THistoryPage::RemoveSpan(const THistorySpan &span) {
  m_store.RemoveSpan(span);
  m_searchesAgain = true;
  Q_EMIT Forgotten({});
}

void THistoryPage::ClearAll() {
  m_results->Reset();
  m_history.Clear();
  m_searchesAgain = true;
  FollowRemoval();
  Q_EMIT Forgotten({});
}

void THistoryPage::spdForgetHistoryClick() {
  if (DialogGate::IsClosed()) return;
  const QPointer<THistoryPage> self(this);
  const QPointer<TfrmForget> dialog(new TfrmForget(m_language, window()));
  const bool isAccepted = dialog->exec() == QDialog::Accepted;
  if (!dialog || !self) return;
  const TForgetting choice = dialog->Choice();
  delete dialog;
  if (!isAccepted) return;
  if (choice.since.isValid()) {
    RemoveSpan({.from = choice.since.toMSecsSinceEpoch()});
    FollowRemoval();
  } else {
    ClearAll();
  }
  if (choice.typedAddresses || choice.cookies || choice.cache || choice.permissions) Q_EMIT ForgetAlong(choice);
}

void THistoryPage::FollowRemoval() {
  if (m_removal.isActive()) return;
  m_removalClock.start();
  m_removal.start();
}

void THistoryPage::ShowRemoval() {
  const THistoryRemoval removal = m_store.Removal();
  if (!removal.isGoing) {
    m_removal.stop();
    m_progress->hide();
    Refresh();
    // A result that was taken out is gone from the list already.
    if (std::exchange(m_searchesAgain, false)) SearchAgain();
    return;
  }
  m_progress->setRange(0, int(removal.total));
  m_progress->setValue(int(removal.done));
  if (m_removalClock.hasExpired(ShowRemovalAfter)) m_progress->show();
}

void THistoryPage::ReadWhatShows() {
  QModelIndex index = m_tree->indexAt({0, 0});
  const int height = m_tree->viewport()->height();
  for (int line = 0; line < MostLinesLookedAt && index.isValid() && m_tree->visualRect(index).top() < height; ++line) {
    const QModelIndex parent = index.parent();
    if (index.row() + 1 == m_model.rowCount(parent)) m_model.ReadOn(parent);
    index = m_tree->indexBelow(index);
  }
}
