#include "ui/confirm_dialog.h"

#include <QPointer>
#include <QScreen>
#include <QStyle>

#include "ui/dialog_gate.h"
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

TfrmConfirm::TfrmConfirm(const TQuestion &question, QWidget *owner)
    : QDialog(owner, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint),
      m_ui(std::make_unique<Ui::TfrmConfirm>()) {
  m_ui->setupUi(this);
  if (owner != nullptr) setFont(owner->font());
  setWindowTitle(question.caption);
  // Read out as soon as the dialog is there: the keyboard is on a button then.
  setAccessibleDescription(
      QStringList{question.firstLine, Shortened(question.secondText, LongestText)}.join(u'\n').trimmed());
  QPalette flat = m_ui->mmoPrompt2->palette();
  flat.setColor(QPalette::Base, palette().color(QPalette::Window));
  flat.setColor(QPalette::Text, palette().color(QPalette::WindowText));
  m_ui->mmoPrompt2->setPalette(flat);
  m_ui->mmoPrompt2->document()->setDocumentMargin(0);
  layout()->setSizeConstraint(QLayout::SetFixedSize);
  SetTexts(question);
  m_ui->chkConfirm->setChecked(question.checkBoxState);
  if (question.isRisky) {
    m_ui->cmdCancel->setDefault(true);
    m_ui->cmdCancel->setFocus();
  }
}

TfrmConfirm::~TfrmConfirm() = default;

void TfrmConfirm::SetTexts(const TQuestion &question) {
  // What leaves no choice is a notice and no question.
  const char *picture = question.cancel.isEmpty() ? ":/icons/information.svg" : ":/icons/question.svg";
  const QIcon icon(question.isRisky ? ":/icons/warning.svg" : picture);
  m_ui->imgConfirm->setPixmap(icon.pixmap(style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, this)));
  SetTextOrHide(*m_ui->cmdOK, question.ok);
  SetTextOrHide(*m_ui->cmdCancel, question.cancel);
  SetTextOrHide(*m_ui->chkConfirm, question.checkBox);
  m_ui->lblTitle->setText(question.firstLine);
  m_ui->lblTitle->setVisible(!question.firstLine.isEmpty());
  m_ui->mmoPrompt2->setPlainText(Shortened(question.secondText, LongestText));
  m_ui->mmoPrompt2->setVisible(!question.secondText.isEmpty());
  m_ui->mmoPrompt2->setAccessibleName(question.firstLine.isEmpty() ? question.caption : question.firstLine);
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

TAnswer ShowConfirm(QWidget *owner, const TQuestion &question) {
  if (DialogGate::IsClosed()) return {.accepted = false, .checked = question.checkBoxState};
  const QPointer<TfrmConfirm> dialog(new TfrmConfirm(question, owner));
  const bool accepted = dialog->exec() == QDialog::Accepted;
  if (!dialog) return {.accepted = false, .checked = question.checkBoxState};
  const TAnswer answer{.accepted = accepted, .checked = dialog->IsChecked()};
  delete dialog;
  return answer;
}
