#include "ui/list_editor.h"

#include <algorithm>
#include <limits>
#include <QCheckBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <utility>

#include "ui/dialog_placing.h"
#include "ui/table_rows.h"
#include "ui_list_editor.h"

namespace {

constexpr int NarrowColumnWidth = 22;  // characters
constexpr int WideColumnWidth = 52;
constexpr int ListHeight = 14;  // lines, where the screen has room
constexpr int LeastListHeight = 5;

}  // namespace

TListEditor::TListEditor(const TLanguage &language, const TListForm &form, QWidget *owner)
    : QDialog(owner), m_language(language), m_form(form), m_ui(std::make_unique<Ui::TListEditor>()) {
  m_ui->setupUi(this);
  language.TranslateForm(this, "GLOBAL");
  QStringList headers;
  for (const TListColumn &column : form.columns) headers.append(language.Text(column.header));
  m_rows = new TTableRows(headers, this);
  QTreeView &list = *m_ui->lstRows;
  list.setObjectName(QLatin1String(form.list));
  list.setModel(m_rows);
  list.installEventFilter(this);
  m_ui->cmdInsert->setText(language.Global("NewEntry"));
  m_ui->cmdUpdate->setText(language.Global("EditEntry"));
  m_ui->cmdDelete->setText(language.Global("Delete"));
  m_ui->cmdUrlCancel->setText(language.Global("Discard"));
  if (form.editTitle.key != nullptr) m_ui->grpEdit->setTitle(language.Text(form.editTitle));
  MakeBoxes();
  SetTabOrder();
  ConnectButtons();
  CloseEdit();
}

TListEditor::~TListEditor() = default;

void TListEditor::Begin(const QString &caption, const QStringList &cells, const QString &note) {
  setWindowTitle(caption);
  m_ui->lblNote->setText(note);
  m_ui->lblNote->setVisible(!note.isEmpty());
  QTreeView &list = *m_ui->lstRows;
  list.setAccessibleName(caption);
  m_rows->SetCells(cells);
  SelectRow(0);

  QHeaderView &header = *list.header();
  const int character = fontMetrics().averageCharWidth();
  header.setStretchLastSection(false);
  int widest = 0;
  for (int column = 0; column < int(m_form.columns.size()); ++column) {
    if (!m_form.columns[column].isFlag) widest = column;
    header.setSectionResizeMode(
        column, m_form.columns[column].isFlag ? QHeaderView::ResizeToContents : QHeaderView::Interactive);
    list.setColumnWidth(column, std::max(character * NarrowColumnWidth, header.sectionSizeHint(column)));
  }
  // The last text is the address.
  header.setSectionResizeMode(widest, QHeaderView::Stretch);
  const int width = character * (NarrowColumnWidth + WideColumnWidth);
  list.setMinimumSize(width / 2, fontMetrics().height() * LeastListHeight);
  const QSize roomy(width, fontMetrics().height() * ListHeight);
  ResizeOnScreen(*this, sizeHint() + roomy - list.sizeHint());
  CentreOnScreen(*this);
}

void TListEditor::MakeBoxes() {
  for (const TListColumn &column : m_form.columns) {
    const int line = int(m_boxes.size());
    const QString label = m_language.Text(column.label);
    if (column.isFlag) {
      m_boxes.append(new QCheckBox(label, m_ui->grpEdit));
    } else {
      auto *box = new QLineEdit(m_ui->grpEdit);
      // It would cut a longer text, and with it the address that it belongs to.
      box->setMaxLength(std::numeric_limits<int>::max());
      auto *caption = new QLabel(label, m_ui->grpEdit);
      caption->setBuddy(box);
      m_ui->layEdit->addWidget(caption, line, 0);
      m_boxes.append(box);
    }
    m_boxes.last()->setObjectName(QLatin1String(column.box));
    m_ui->layEdit->addWidget(m_boxes.last(), line, 1);
  }
}

void TListEditor::SetTabOrder() {
  QWidgetList order{m_ui->lstRows, m_ui->cmdInsert, m_ui->cmdUpdate, m_ui->cmdDelete, m_ui->cmdUp, m_ui->cmdDown};
  order += m_boxes;
  order += QWidgetList{m_ui->cmdUrlInsert, m_ui->cmdUrlCancel, m_ui->cmdOk, m_ui->cmdCancel};
  for (qsizetype i = 1; i < order.size(); ++i) setTabOrder(order.at(i - 1), order.at(i));
}

void TListEditor::ConnectButtons() {
  connect(m_ui->lstRows->selectionModel(), &QItemSelectionModel::selectionChanged, this, &TListEditor::UpdateButtons);
  connect(m_ui->lstRows, &QTreeView::doubleClicked, m_ui->cmdUpdate, &QPushButton::click);
  connect(m_ui->cmdInsert, &QPushButton::clicked, this, [this] { OpenEdit(TEdit::Insert); });
  connect(m_ui->cmdUpdate, &QPushButton::clicked, this, [this] { OpenEdit(TEdit::Update); });
  connect(m_ui->cmdDelete, &QPushButton::clicked, this, &TListEditor::cmdDeleteClick);
  connect(m_ui->cmdUp, &QPushButton::clicked, this, [this] { MoveRow(-1); });
  connect(m_ui->cmdDown, &QPushButton::clicked, this, [this] { MoveRow(1); });
  connect(m_ui->cmdUrlInsert, &QPushButton::clicked, this, &TListEditor::cmdUrlInsertClick);
  connect(m_ui->cmdUrlCancel, &QPushButton::clicked, this, &TListEditor::CloseEdit);
  connect(m_ui->cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
  connect(m_ui->cmdOk, &QPushButton::clicked, this, [this] {
    if (Save()) accept();
  });
}

int TListEditor::Row() const {
  const QModelIndexList rows = m_ui->lstRows->selectionModel()->selectedRows();
  return rows.isEmpty() ? -1 : rows.first().row();
}

void TListEditor::SelectRow(int row) {
  if (row >= 0 && row < m_rows->Count()) m_ui->lstRows->setCurrentIndex(m_rows->index(row, 0));
  UpdateButtons();
}

void TListEditor::UpdateButtons() {
  const bool rest = m_edit != TEdit::None && m_form.rests == TListForm::TRests::Buttons;
  const bool isSelected = Row() >= 0;
  m_ui->cmdInsert->setEnabled(!rest);
  for (QPushButton *button : {m_ui->cmdUpdate, m_ui->cmdDelete, m_ui->cmdUp, m_ui->cmdDown}) {
    button->setEnabled(isSelected && !rest);
  }
  // The entry that is being edited is to be taken or given up first; OK would drop it.
  m_ui->cmdOk->setEnabled(m_edit == TEdit::None);
}

QStringList TListEditor::Entry() const {
  QStringList entry;
  for (const QWidget *box : m_boxes) {
    const auto *check = qobject_cast<const QCheckBox *>(box);
    if (check != nullptr) {
      entry.append(check->isChecked() ? QString(TListColumn::Ticked) : QString());
    } else {
      entry.append(static_cast<const QLineEdit *>(box)->text());
    }
  }
  return entry;
}

void TListEditor::SetEntry(const QStringList &entry) {
  for (qsizetype column = 0; column < m_boxes.size(); ++column) {
    const QString text = entry.value(column);
    if (auto *check = qobject_cast<QCheckBox *>(m_boxes.at(column))) {
      check->setChecked(text == TListColumn::Ticked);
    } else {
      static_cast<QLineEdit *>(m_boxes.at(column))->setText(text);
    }
  }
}

void TListEditor::OpenEdit(TEdit edit) {
  const bool isUpdate = edit == TEdit::Update;
  const int row = Row();
  if (isUpdate && row < 0) return;
  m_edit = edit;
  m_edited = isUpdate ? m_rows->index(row, 0) : QModelIndex();
  SetEntry(isUpdate ? m_rows->At(row) : QStringList());
  m_ui->cmdUrlInsert->setText(isUpdate ? m_language.Global("Update") : m_language.Global("Insert"));
  m_ui->cmdUrlInsert->setDefault(true);
  m_editHeight += ShowPart(*this, *m_ui->grpEdit);
  m_ui->lstRows->setEnabled(!isUpdate || m_form.rests != TListForm::TRests::List);
  UpdateButtons();
  QWidget *box = m_boxes.at(isUpdate ? m_form.updateBox : 0);
  box->setFocus();
  if (auto *line = qobject_cast<QLineEdit *>(box)) line->selectAll();
}

void TListEditor::CloseEdit() {
  m_edit = TEdit::None;
  m_edited = QModelIndex();
  HidePart(*this, *m_ui->grpEdit, std::exchange(m_editHeight, 0));
  m_ui->lstRows->setEnabled(true);
  m_ui->lstRows->setFocus();
  m_ui->cmdOk->setDefault(true);
  UpdateButtons();
}

void TListEditor::cmdUrlInsertClick() {
  QStringList entry = Entry();
  const bool isAccepted = Accepts(entry);
  SetEntry(entry);
  if (!isAccepted) return;
  if (!m_edited.isValid()) {
    m_rows->Append(entry);
    SelectRow(m_rows->Count() - 1);
  } else {
    m_rows->Replace(m_edited.row(), entry);
    SelectRow(m_edited.row());
  }
  CloseEdit();
}

void TListEditor::cmdDeleteClick() {
  const int row = Row();
  if (row < 0) return;
  // What was being changed is gone, and the next row must not take its text.
  if (m_edit == TEdit::Update) CloseEdit();
  m_rows->Remove(row);  // The list selects its neighbour.
  UpdateButtons();
}

void TListEditor::MoveRow(int by) {
  const int row = Row();
  if (row < 0) return;
  m_rows->Move(row, by);
  m_ui->lstRows->scrollTo(m_rows->index(Row(), 0));
  UpdateButtons();
}

void TListEditor::keyPressEvent(QKeyEvent *event) {
  if (m_edit != TEdit::None && event->matches(QKeySequence::Cancel)) {
    CloseEdit();
  } else {
    QDialog::keyPressEvent(event);
  }
}

bool TListEditor::eventFilter(QObject *watched, QEvent *event) {
  if (watched == m_ui->lstRows && event->type() == QEvent::KeyPress &&
      static_cast<QKeyEvent *>(event)->matches(QKeySequence::Delete)) {
    m_ui->cmdDelete->click();
    return true;
  }
  return QDialog::eventFilter(watched, event);
}
