#include "chrome/open_dialog.h"

#include <QFileDialog>
#include <QFileInfo>

#include "config/language.h"
#include "ui/dialog_placing.h"
#include "ui_open_dialog.h"

namespace {

constexpr int ListWidthInCharacters = 60;

}  // namespace

TfrmOpen::TfrmOpen(const TLanguage &language, const QStringList &addresses, QWidget *parent)
    : QDialog(parent), m_language(language), m_ui(std::make_unique<Ui::TfrmOpen>()) {
  m_ui->setupUi(this);
  language.TranslateForm(this, "OPEN");
  QComboBox &box = *m_ui->ComboBox1;
  box.setMinimumWidth(box.fontMetrics().averageCharWidth() * ListWidthInCharacters);
  // Of its own lists the box would complete what is typed, and open something else than what stands there.
  box.setCompleter(nullptr);
  connect(&box, &QComboBox::editTextChanged, this, &TfrmOpen::ComboBox1Change);
  connect(m_ui->cmdBrowse, &QPushButton::clicked, this, &TfrmOpen::cmdBrowseClick);
  connect(m_ui->cmdOK, &QPushButton::clicked, this, &TfrmOpen::cmdOKClick);
  FormActivate(addresses);
  CentreOnScreen(*this);
}

TfrmOpen::~TfrmOpen() = default;

void TfrmOpen::FormActivate(const QStringList &addresses) {
  m_ui->ComboBox1->clear();
  m_ui->ComboBox1->addItems(addresses);
  m_ui->ComboBox1->setCurrentIndex(-1);
  m_ui->ComboBox1->clearEditText();
  m_ui->ComboBox1->setFocus();
  ComboBox1Change();
}

void TfrmOpen::ComboBox1Change() {
  m_ui->cmdOK->setEnabled(!m_ui->ComboBox1->currentText().isEmpty());
}

void TfrmOpen::cmdBrowseClick() {
  auto *dialog = new QFileDialog(this, m_language.Text("OPEN", "BrowseTitle"));
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setFileMode(QFileDialog::ExistingFile);
  dialog->setNameFilters(m_language.Text("OPEN", "BrowseFilter").split(QStringLiteral(";;")));
  connect(dialog, &QFileDialog::fileSelected, this, [this](const QString &file) {
    if (QFileInfo(file).isFile()) m_ui->ComboBox1->setEditText(file);
  });
  dialog->open();
}

void TfrmOpen::cmdOKClick() {
  const QString text = m_ui->ComboBox1->currentText();
  if (text.isEmpty()) return;
  Q_EMIT Chosen(text, m_ui->chkNewTab->isChecked());
  accept();
}
