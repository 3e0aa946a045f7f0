#include "ui/confirm_dialog.h"

#include <QPointer>
#include <QScreen>
#include <QStyle>

#include "ui/dialog_placing.h"
#include "ui/shown_text.h"
#include "ui_confirm_dialog.h"

namespace {

constexpr int TextWidthInCharacters = 52;
constexpr qsizetype LongestText = 8000;       // characters; laying out a line of millions would take minutes
constexpr double LargestShareOfScreen = 0.5;  // of the height, for the second text; longer ones scroll

void SetTextOrHide(QAbstractButton &button, const QString &text) {
  button.setText(text);
  button.setVisible(!text.isEmpty());
}

}  // namespace

TfrmConfirm::TfrmConfirm(QWidget *owner)
    : QDialog(owner, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint),
      m_ui(std::make_unique<Ui::TfrmConfirm>()) {
  m_ui->setupUi(this);
  QPalette flat = m_ui->mmoPrompt2->palette();
  flat.setColor(QPalette::Base, palette().color(QPalette::Window));
  flat.setColor(QPalette::Text, palette().color(QPalette::WindowText));
  m_ui->mmoPrompt2->setPalette(flat);
  m_ui->mmoPrompt2->document()->setDocumentMargin(0);
  layout()->setSizeConstraint(QLayout::SetFixedSize);
}

TfrmConfirm::~TfrmConfirm() = default;

void TfrmConfirm::SetTexts(const QString &checkBoxText, const QString &cancelText, const QString &okText,
                           const QString &secondText, const QString &firstLine) {
  // What leaves no choice is a notice and no question.
  const QIcon icon(cancelText.isEmpty() ? ":/icons/information.svg" : ":/icons/question.svg");
  m_ui->imgConfirm->setPixmap(icon.pixmap(style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, this)));
  SetTextOrHide(*m_ui->cmdOK, okText);
  SetTextOrHide(*m_ui->cmdCancel, cancelText);
  SetTextOrHide(*m_ui->chkConfirm, checkBoxText);
  m_ui->lblTitle->setText(firstLine);
  m_ui->lblTitle->setVisible(!firstLine.isEmpty());
  m_ui->mmoPrompt2->setPlainText(Shortened(secondText, LongestText));
  m_ui->mmoPrompt2->setVisible(!secondText.isEmpty());
  m_ui->mmoPrompt2->setAccessibleName(firstLine.isEmpty() ? windowTitle() : firstLine);
}

void TfrmConfirm::SetChecked(bool checked) {
  m_ui->chkConfirm->setChecked(checked);
}

bool TfrmConfirm::IsChecked() const {
  return m_ui->chkConfirm->isChecked();
}

void TfrmConfirm::showEvent(QShowEvent *event) {
  FitToContents();
  CentreOnScreen(*this);
  QDialog::showEvent(event);
}

// Wrapped text has no size of its own: the texts share one width, and each is made as high as that width asks for.
void TfrmConfirm::FitToContents() {
  QFont bold = font();
  bold.setBold(true);
  m_ui->lblTitle->setFont(bold);
  const QSize available = screen()->availableSize();
  const int beside = m_ui->imgConfirm->sizeHint().width() + m_ui->layPrompt->spacing();
  const int wanted = qMax(m_ui->layButtons->sizeHint().width(), m_ui->chkConfirm->sizeHint().width()) - beside;
  const int width = qMin(qMax(fontMetrics().averageCharWidth() * TextWidthInCharacters, wanted), available.width() / 2);
  if (!m_ui->lblTitle->text().isEmpty()) {
    m_ui->lblTitle->setFixedSize(width, m_ui->lblTitle->heightForWidth(width));
  }
  QTextDocument *document = m_ui->mmoPrompt2->document();
  document->setDefaultFont(font());
  document->setTextWidth(width);
  const int height = qCeil(document->size().height());
  m_ui->mmoPrompt2->setFixedSize(width, qMin(height, int(available.height() * LargestShareOfScreen)));
  // A text that fits needs no stop for the Tab key; one that scrolls does.
  const bool scrolls = height > m_ui->mmoPrompt2->height();
  m_ui->mmoPrompt2->setFocusPolicy(scrolls ? Qt::StrongFocus : Qt::ClickFocus);
  m_ui->mmoPrompt2->setVerticalScrollBarPolicy(scrolls ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff);
  layout()->activate();
}

bool ShowConfirm(QWidget *owner, const QFont &font, const QString &caption, bool checkBoxState, bool *checkBoxResult,
                 const QString &checkBoxText, const QString &cancelText, const QString &okText,
                 const QString &secondText, const QString &firstLine) {
  // The owner may be closed while the question is open; it then takes the dialog along.
  const QPointer<TfrmConfirm> dialog(new TfrmConfirm(owner));
  dialog->setFont(font);
  dialog->setWindowTitle(caption);
  dialog->SetTexts(checkBoxText, cancelText, okText, secondText, firstLine);
  dialog->SetChecked(checkBoxState);
  const bool accepted = dialog->exec() == QDialog::Accepted;
  if (dialog.isNull()) {
    if (checkBoxResult != nullptr) *checkBoxResult = checkBoxState;
    return false;
  }
  if (checkBoxResult != nullptr) *checkBoxResult = dialog->IsChecked();
  delete dialog;
  return accepted;
}
