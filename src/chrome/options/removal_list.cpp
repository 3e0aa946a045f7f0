#include "chrome/options/removal_list.h"

#include "ui_removal_list.h"

namespace {

constexpr int ColumnWidth = 160;  // pixels

}  // namespace

TRemovalList::TRemovalList(const char *name, const TLanguage &language, const TTextKey &label,
                           const QStringList &headers, QWidget *parent)
    : QWidget(parent), m_ui(std::make_unique<Ui::TRemovalList>()) {
  m_ui->setupUi(this);
  setObjectName(QLatin1String(name));
  language.TranslateForm(this, "OPTIONS");
  m_ui->lblRows->setText(language.Text(label));
  m_ui->lvRows->setHeaderLabels(headers);
  for (int column = 0; column + 1 < headers.size(); ++column) m_ui->lvRows->setColumnWidth(column, ColumnWidth);
  connect(m_ui->btnRemove, &QPushButton::clicked, this, [this] { RemoveRows(false); });
  connect(m_ui->btnRemoveAll, &QPushButton::clicked, this, [this] { RemoveRows(true); });
  connect(m_ui->lvRows, &QTreeWidget::itemSelectionChanged, this, &TRemovalList::UpdateButtons);
  UpdateButtons();
}

TRemovalList::~TRemovalList() = default;

void TRemovalList::AddRow(const QStringList &texts, const QVariant &what) {
  auto *row = new QTreeWidgetItem(m_ui->lvRows, texts);
  row->setData(0, Qt::UserRole, what);
  UpdateButtons();
}

void TRemovalList::RemoveRows(bool all) {
  if (all) m_ui->lvRows->selectAll();
  for (const QTreeWidgetItem *row : m_ui->lvRows->selectedItems()) {
    m_removed.append(row->data(0, Qt::UserRole));
    delete row;
  }
  UpdateButtons();
}

void TRemovalList::UpdateButtons() {
  m_ui->btnRemove->setEnabled(!m_ui->lvRows->selectedItems().isEmpty());
  m_ui->btnRemoveAll->setEnabled(m_ui->lvRows->topLevelItemCount() > 0);
}
