#include "search/search_engine_dialog.h"

#include <limits>
#include <QKeyEvent>
#include <QShortcut>
#include <utility>

#include "config/language.h"
#include "ui/dialog_placing.h"
#include "ui/message_box.h"
#include "ui_search_engine_dialog.h"

namespace {

constexpr int TitleColumn = 0;
constexpr int LocationColumn = 1;
constexpr int ListWidthInCharacters = 70;
constexpr int TitleWidthInCharacters = 22;
constexpr int ListHeightInLines = 12;

QTreeWidgetItem *MakeItem(const QString &title, const QString &location) {
  auto *item = new QTreeWidgetItem({title, location});
  item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren);
  return item;
}

}  // namespace

TfrmSearchEngine::TfrmSearchEngine(const TLanguage &language, TSearchLists &lists, TSearchList list, QWidget *parent)
    : QDialog(parent),
      m_language(language),
      m_lists(lists),
      m_list(list),
      m_ui(std::make_unique<Ui::TfrmSearchEngine>()) {
  m_ui->setupUi(this);
  language.TranslateForm(this, "SEARCH_ENGINE");
  switch (list) {
    case TSearchList::SearchBar:
      setWindowTitle(language.Text("SEARCH_ENGINE", "OrganizeSearchBar"));
      break;
    case TSearchList::SearchEngines:
      setWindowTitle(language.Text("SEARCH_ENGINE", "OrganizeSearchEngines"));
      break;
    case TSearchList::QuickSearch:
      setWindowTitle(language.Text("QUICK_SEARCH", "OrganizeQuickSearch"));
      m_ui->lblNote->setText(language.Text("QUICK_SEARCH", "FormatNote"));
      break;
  }
  m_ui->lblNote->setVisible(list == TSearchList::QuickSearch);
  m_ui->lstEngines->setAccessibleName(windowTitle());
  const QFontMetrics metrics(font());
  m_ui->lstEngines->setMinimumSize(metrics.averageCharWidth() * ListWidthInCharacters,
                                   (metrics.height() + 4) * ListHeightInLines);
  m_ui->lstEngines->setColumnWidth(TitleColumn, metrics.averageCharWidth() * TitleWidthInCharacters);
  for (const QString &line : lists.Load(list)) {
    m_ui->lstEngines->addTopLevelItem(MakeItem(line.section(u'=', 0, 0), line.section(u'=', 1)));
  }
  // The boxes would cut a longer text, and with it the address that it belongs to.
  m_ui->txtTitle->setMaxLength(std::numeric_limits<int>::max());
  m_ui->txtUrl->setMaxLength(std::numeric_limits<int>::max());
  m_ui->grpEdit->hide();
  connect(m_ui->cmdInsert, &QPushButton::clicked, this, &TfrmSearchEngine::cmdInsertClick);
  connect(m_ui->cmdUpdate, &QPushButton::clicked, this, &TfrmSearchEngine::cmdUpdateClick);
  connect(m_ui->cmdDelete, &QPushButton::clicked, this, &TfrmSearchEngine::cmdDeleteClick);
  connect(m_ui->cmdUp, &QPushButton::clicked, this, [this] { Move(-1); });
  connect(m_ui->cmdDown, &QPushButton::clicked, this, [this] { Move(1); });
  connect(m_ui->cmdUrlInsert, &QPushButton::clicked, this, &TfrmSearchEngine::cmdUrlInsertClick);
  connect(m_ui->cmdUrlCancel, &QPushButton::clicked, this, &TfrmSearchEngine::cmdUrlCancelClick);
  connect(m_ui->cmdOk, &QPushButton::clicked, this, &TfrmSearchEngine::cmdOkClick);
  connect(m_ui->lstEngines, &QTreeWidget::itemSelectionChanged, this, &TfrmSearchEngine::UpdateButtons);
  connect(m_ui->lstEngines, &QTreeWidget::itemDoubleClicked, this, [this] {
    if (!m_editing) cmdUpdateClick();
  });
  auto *deleteKey = new QShortcut(QKeySequence::Delete, m_ui->lstEngines, nullptr, nullptr, Qt::WidgetShortcut);
  connect(deleteKey, &QShortcut::activated, m_ui->cmdDelete, &QPushButton::click);
  m_ui->lstEngines->setCurrentItem(m_ui->lstEngines->topLevelItem(0));
  UpdateButtons();
}

TfrmSearchEngine::~TfrmSearchEngine() = default;

QStringList TfrmSearchEngine::Lines() const {
  QStringList lines;
  for (int row = 0; row < m_ui->lstEngines->topLevelItemCount(); ++row) {
    const QTreeWidgetItem *item = m_ui->lstEngines->topLevelItem(row);
    lines.append(item->text(TitleColumn) + u'=' + item->text(LocationColumn));
  }
  return lines;
}

// Esc gives up the entry first and the whole list only then.
void TfrmSearchEngine::keyPressEvent(QKeyEvent *event) {
  if (m_editing && event->matches(QKeySequence::Cancel)) {
    cmdUrlCancelClick();
  } else {
    QDialog::keyPressEvent(event);
  }
}

QTreeWidgetItem *TfrmSearchEngine::Selected() const {
  const QList<QTreeWidgetItem *> selected = m_ui->lstEngines->selectedItems();
  return selected.size() == 1 ? selected.first() : nullptr;
}

void TfrmSearchEngine::UpdateButtons() {
  const bool hasOne = Selected() != nullptr && !m_editing;
  for (QPushButton *button : {m_ui->cmdUpdate, m_ui->cmdDelete, m_ui->cmdUp, m_ui->cmdDown}) {
    button->setEnabled(hasOne);
  }
  m_ui->cmdInsert->setEnabled(!m_editing);
  // The entry that is being edited is to be taken or given up first; OK would drop it.
  m_ui->cmdOk->setEnabled(!m_editing);
}

void TfrmSearchEngine::OpenEditArea(const QString &title, const QString &location, const QString &acceptText) {
  m_editing = true;
  UpdateButtons();
  m_ui->txtTitle->setText(title);
  m_ui->txtUrl->setText(location);
  m_ui->cmdUrlInsert->setText(acceptText);
  m_ui->cmdUrlInsert->setDefault(true);
  m_editHeight += ShowPart(*this, *m_ui->grpEdit);
  m_ui->txtTitle->setFocus();
  m_ui->txtTitle->selectAll();
}

void TfrmSearchEngine::cmdInsertClick() {
  m_edited = -1;
  OpenEditArea({}, {}, m_language.Global("Insert"));
}

void TfrmSearchEngine::cmdUpdateClick() {
  QTreeWidgetItem *item = Selected();
  if (item == nullptr) return;
  m_edited = m_ui->lstEngines->indexOfTopLevelItem(item);
  OpenEditArea(item->text(TitleColumn), item->text(LocationColumn), m_language.Global("Update"));
}

void TfrmSearchEngine::cmdUrlInsertClick() {
  const QString title = m_ui->txtTitle->text().trimmed();
  const QString location = m_ui->txtUrl->text().trimmed();
  m_ui->txtTitle->setText(title);
  m_ui->txtUrl->setText(location);
  if (m_list == TSearchList::QuickSearch && title.contains(u' ')) return;
  if (location.isEmpty() || title.isEmpty()) return;
  QTreeWidgetItem *item = m_ui->lstEngines->topLevelItem(m_edited);
  if (item == nullptr) {
    item = MakeItem(title, location);
    m_ui->lstEngines->addTopLevelItem(item);
  } else {
    item->setText(TitleColumn, title);
    item->setText(LocationColumn, location);
  }
  m_ui->lstEngines->setCurrentItem(item);
  cmdUrlCancelClick();
}

void TfrmSearchEngine::cmdUrlCancelClick() {
  m_editing = false;
  m_edited = -1;
  HidePart(*this, *m_ui->grpEdit, std::exchange(m_editHeight, 0));
  m_ui->cmdOk->setDefault(true);
  UpdateButtons();
  m_ui->lstEngines->setFocus();
}

void TfrmSearchEngine::cmdOkClick() {
  if (m_lists.Save(m_list, Lines())) {
    accept();
  } else {
    ShowWarning(this, m_language, m_language.Text("MAIN", "StoreNotKept"));
  }
}

void TfrmSearchEngine::cmdDeleteClick() {
  delete Selected();
  UpdateButtons();
}

void TfrmSearchEngine::Move(int step) {
  QTreeWidgetItem *item = Selected();
  if (item == nullptr) return;
  const int from = m_ui->lstEngines->indexOfTopLevelItem(item);
  const int to = from + step;
  if (to < 0 || to >= m_ui->lstEngines->topLevelItemCount()) return;
  m_ui->lstEngines->insertTopLevelItem(to, m_ui->lstEngines->takeTopLevelItem(from));
  m_ui->lstEngines->setCurrentItem(item);
}
