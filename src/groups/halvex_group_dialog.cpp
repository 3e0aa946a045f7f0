#include "groups/halvex_group_dialog.h"

#include <algorithm>
#include <limits>
#include <QFileInfo>
#include <QHeaderView>
#include <QKeyEvent>
#include <QScreen>
#include <utility>

#include "config/language.h"
#include "groups/group_sites.h"
#include "groups/halvex_group.h"
#include "ui/dialog_placing.h"
#include "ui/message_box.h"
#include "ui_halvex_group_dialog.h"

namespace {

constexpr int NameColumnWidth = 22;  // characters
constexpr int LocationColumnWidth = 52;
constexpr int ListHeight = 14;  // lines, where the screen has room
constexpr int LeastListHeight = 5;

}  // namespace

TfrmHalvexGroup::TfrmHalvexGroup(const TLanguage &language, const QString &fileName, QWidget *owner)
    : QDialog(owner), m_ui(std::make_unique<Ui::TfrmHalvexGroup>()), m_language(language), m_fileName(fileName) {
  m_ui->setupUi(this);
  language.TranslateForm(this, "HalvexGroups");
  const QString caption = language.Text("HalvexGroups", "HalvexGroup");
  setWindowTitle(QStringLiteral("%1: %2").arg(caption, QFileInfo(fileName).fileName()));

  m_sites =
      new TGroupSites({language.Text("HalvexGroups", "StickyNameColumn"),
                       language.Text("HalvexGroups", "LocationColumn"), language.Text("HalvexGroups", "LockedColumn")},
                      this);
  QTreeView &list = *m_ui->lstSites;
  list.setModel(m_sites);
  list.setAccessibleName(caption);
  list.installEventFilter(this);
  const int character = fontMetrics().averageCharWidth();
  list.header()->setStretchLastSection(false);
  list.header()->setSectionResizeMode(TGroupSites::LocationColumn, QHeaderView::Stretch);
  list.header()->setSectionResizeMode(TGroupSites::LockedColumn, QHeaderView::ResizeToContents);
  list.setColumnWidth(TGroupSites::NameColumn,
                      std::max(character * NameColumnWidth, list.header()->sectionSizeHint(TGroupSites::NameColumn)));
  list.setMinimumSize(character * (NameColumnWidth + LocationColumnWidth) / 2,
                      fontMetrics().height() * LeastListHeight);
  // The boxes would cut a longer text, and with it the page that it belongs to.
  m_ui->edtTitle->setMaxLength(std::numeric_limits<int>::max());
  m_ui->edtLocation->setMaxLength(std::numeric_limits<int>::max());
  const THalvexGroup group(fileName);
  m_readError = group.ReadError();
  m_sites->Read(group);
  ConnectButtons();
  CloseEdit();
  SelectRow(0);
  const QSize roomy(character * (NameColumnWidth + LocationColumnWidth), fontMetrics().height() * ListHeight);
  resize((sizeHint() + roomy - list.sizeHint()).boundedTo(screen()->availableSize()));
  CentreOnScreen(*this);
}

TfrmHalvexGroup::~TfrmHalvexGroup() = default;

void TfrmHalvexGroup::ConnectButtons() {
  connect(m_ui->lstSites->selectionModel(), &QItemSelectionModel::selectionChanged, this,
          &TfrmHalvexGroup::UpdateButtons);
  connect(m_ui->lstSites, &QTreeView::doubleClicked, this, [this] { OpenEdit(TEdit::Update); });
  connect(m_ui->cmdInsert, &QPushButton::clicked, this, [this] { OpenEdit(TEdit::Insert); });
  connect(m_ui->cmdUpdate, &QPushButton::clicked, this, [this] { OpenEdit(TEdit::Update); });
  connect(m_ui->cmdDelete, &QPushButton::clicked, this, &TfrmHalvexGroup::cmdDeleteClick);
  connect(m_ui->cmdUp, &QPushButton::clicked, this, [this] { MoveRow(-1); });
  connect(m_ui->cmdDown, &QPushButton::clicked, this, [this] { MoveRow(1); });
  connect(m_ui->cmdUrlInsert, &QPushButton::clicked, this, &TfrmHalvexGroup::cmdUrlInsertClick);
  connect(m_ui->cmdUrlCancel, &QPushButton::clicked, this, &TfrmHalvexGroup::CloseEdit);
  connect(m_ui->cmdOk, &QPushButton::clicked, this, &TfrmHalvexGroup::cmdOkClick);
  connect(m_ui->cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
}

int TfrmHalvexGroup::Row() const {
  const QModelIndexList rows = m_ui->lstSites->selectionModel()->selectedRows();
  return rows.isEmpty() ? -1 : rows.first().row();
}

void TfrmHalvexGroup::SelectRow(int row) {
  if (row >= 0 && row < m_sites->Count()) m_ui->lstSites->setCurrentIndex(m_sites->index(row, 0));
  UpdateButtons();
}

void TfrmHalvexGroup::UpdateButtons() {
  const bool isSelected = Row() >= 0;
  for (QPushButton *button : {m_ui->cmdUpdate, m_ui->cmdDelete, m_ui->cmdUp, m_ui->cmdDown}) {
    button->setEnabled(isSelected);
  }
  // The page that is being edited is to be taken or given up first; OK would drop it.
  m_ui->cmdOk->setEnabled(m_edit == TEdit::None);
}

void TfrmHalvexGroup::OpenEdit(TEdit edit) {
  const int row = Row();
  if (edit == TEdit::Update && row < 0) return;
  m_edit = edit;
  const TGroupSite site = edit == TEdit::Update ? m_sites->At(row) : TGroupSite();
  m_ui->edtTitle->setText(site.name);
  m_ui->edtLocation->setText(site.location);
  m_ui->chkTabLocked->setChecked(site.locked);
  m_ui->cmdUrlInsert->setText(edit == TEdit::Insert ? m_language.Global("Insert") : m_language.Global("Update"));
  m_editHeight += ShowPart(*this, *m_ui->grpEdit);
  // The row that is being changed stays the selected one.
  m_ui->lstSites->setEnabled(edit == TEdit::Insert);
  m_ui->cmdUrlInsert->setDefault(true);
  UpdateButtons();
  (edit == TEdit::Insert ? m_ui->edtTitle : m_ui->edtLocation)->setFocus();
}

void TfrmHalvexGroup::CloseEdit() {
  m_edit = TEdit::None;
  HidePart(*this, *m_ui->grpEdit, std::exchange(m_editHeight, 0));
  m_ui->lstSites->setEnabled(true);
  m_ui->lstSites->setFocus();
  m_ui->cmdOk->setDefault(true);
  UpdateButtons();
}

void TfrmHalvexGroup::cmdUrlInsertClick() {
  const TGroupSite site{m_ui->edtTitle->text(), m_ui->edtLocation->text().trimmed(), m_ui->chkTabLocked->isChecked()};
  if (site.location.isEmpty()) return;
  if (m_edit == TEdit::Insert) {
    m_sites->Append(site);
    SelectRow(m_sites->Count() - 1);
  } else if (Row() >= 0) {
    m_sites->Replace(Row(), site);
  }
  CloseEdit();
}

void TfrmHalvexGroup::cmdDeleteClick() {
  const int row = Row();
  if (row < 0) return;
  // What was being changed is gone, and the next row must not take its text.
  if (m_edit == TEdit::Update) CloseEdit();
  m_sites->Remove(row);
  SelectRow(qMin(row, m_sites->Count() - 1));
}

void TfrmHalvexGroup::MoveRow(int by) {
  if (Row() < 0) return;
  m_sites->Move(Row(), by);
  m_ui->lstSites->scrollTo(m_sites->index(Row(), 0));
  UpdateButtons();
}

void TfrmHalvexGroup::cmdOkClick() {
  THalvexGroup group(m_fileName);
  // The file may have gone since the dialog was opened; it is made again then.
  group.SetFileName(m_fileName);
  m_sites->Write(group);
  QString error;
  if (group.Save(&error)) {
    accept();
    return;
  }
  const QString text = m_language.Text("HalvexGroups", "CannotWrite").arg(QFileInfo(m_fileName).fileName(), error);
  ShowWarning(this, m_language, text, m_language.Global("HalvexGroup"));
}

void TfrmHalvexGroup::keyPressEvent(QKeyEvent *event) {
  if (event->key() == Qt::Key_Escape && m_edit != TEdit::None) {
    CloseEdit();
    return;
  }
  QDialog::keyPressEvent(event);
}

bool TfrmHalvexGroup::eventFilter(QObject *watched, QEvent *event) {
  if (watched == m_ui->lstSites && event->type() == QEvent::KeyPress) {
    const auto *press = static_cast<QKeyEvent *>(event);
    if (press->matches(QKeySequence::Delete)) {
      cmdDeleteClick();
      return true;
    }
  }
  return QDialog::eventFilter(watched, event);
}
