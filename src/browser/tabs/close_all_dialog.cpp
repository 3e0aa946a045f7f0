#include "browser/tabs/close_all_dialog.h"

#include "config/language.h"
#include "ui/dialog_placing.h"
#include "ui/shown_text.h"
#include "ui_close_all_dialog.h"

namespace {

constexpr int ListWidthInCharacters = 60;
constexpr int ListHeightInLines = 14;

}  // namespace

TfrmCloseAll::TfrmCloseAll(const TLanguage &language, const QStringList &lines, QWidget *parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::TfrmCloseAll>()) {
  m_ui->setupUi(this);
  language.TranslateForm(this, "CLOSE_ALL_LIST");
  QListWidget &list = *m_ui->CheckListBox1;
  list.setAccessibleName(m_ui->lblPrompt->text());
  for (const QString &line : lines) {
    // Titles come from pages: one line each, whatever they hold.
    const QString title = line.simplified();
    const QString text = title.isEmpty() ? language.Global("Blank") : title;
    auto *item = new QListWidgetItem(text, &list);
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
    item->setToolTip(PlainTip(text));
  }
  SetAllChecked(true);
  list.setCurrentRow(0);
  connect(m_ui->cmdSelectAll, &QPushButton::clicked, this, [this] { SetAllChecked(true); });
  connect(m_ui->cmdDeselectAll, &QPushButton::clicked, this, [this] { SetAllChecked(false); });
  connect(m_ui->cmdClose, &QPushButton::clicked, this, &QDialog::accept);
}

TfrmCloseAll::~TfrmCloseAll() = default;

void TfrmCloseAll::showEvent(QShowEvent *event) {
  const QFontMetrics metrics(m_ui->CheckListBox1->font());
  m_ui->CheckListBox1->setMinimumSize(metrics.averageCharWidth() * ListWidthInCharacters,
                                      (metrics.height() + 4) * ListHeightInLines);
  layout()->setSizeConstraint(QLayout::SetFixedSize);
  layout()->activate();
  CentreOnScreen(*this);
  QDialog::showEvent(event);
}

void TfrmCloseAll::SetAllChecked(bool checked) {
  for (int row = 0; row < m_ui->CheckListBox1->count(); ++row) {
    m_ui->CheckListBox1->item(row)->setCheckState(checked ? Qt::Checked : Qt::Unchecked);
  }
}

QList<int> TfrmCloseAll::Ticked() const {
  QList<int> ticked;
  for (int row = m_ui->CheckListBox1->count() - 1; row >= 0; --row) {
    if (m_ui->CheckListBox1->item(row)->checkState() == Qt::Checked) ticked.append(row);
  }
  return ticked;
}
