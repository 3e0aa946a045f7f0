#include "browser/page/script_dialog.h"

#include <QTextDocument>

#include "config/language.h"
#include "ui_script_dialog.h"

namespace {

constexpr int TextWidthInCharacters = 60;
constexpr int MostLines = 14;  // longer messages scroll
constexpr int LongestMessage = 20000;
constexpr int LongestValue = 32767;

}  // namespace

TScriptDialog::TScriptDialog(TKind kind, const QString &heading, const QString &message, const TLanguage &language,
                             QWidget *owner)
    : QDialog(owner), m_kind(kind), m_ui(std::make_unique<Ui::TScriptDialog>()) {
  m_ui->setupUi(this);
  language.TranslateForm(this, "SCRIPT_DIALOG");
  setWindowTitle(heading);
  QFont bold = font();
  bold.setBold(true);
  m_ui->lblOrigin->setFont(bold);
  m_ui->lblOrigin->setText(heading);
  QPalette flat = m_ui->mmoMessage->palette();
  flat.setColor(QPalette::Base, palette().color(QPalette::Window));
  flat.setColor(QPalette::Text, palette().color(QPalette::WindowText));
  m_ui->mmoMessage->setPalette(flat);
  m_ui->mmoMessage->setAccessibleName(heading);
  const bool cut = message.size() > LongestMessage;
  m_ui->mmoMessage->setPlainText(cut ? message.left(LongestMessage) + QChar(0x2026) : message);
  setAccessibleDescription(heading + u'\n' + m_ui->mmoMessage->toPlainText());
  m_ui->txtValue->setMaxLength(LongestValue);
  m_ui->txtValue->setAccessibleName(message.left(TextWidthInCharacters * 2).simplified());
  m_ui->txtValue->setVisible(kind == TKind::Prompt);
  m_ui->cmdCancel->setVisible(kind != TKind::Alert);
  m_ui->chkKeep->hide();
  (kind == TKind::Prompt ? static_cast<QWidget *>(m_ui->txtValue) : m_ui->cmdOK)->setFocus();
  if (kind == TKind::BeforeUnload) {
    m_ui->cmdOK->setText(language.Text("SCRIPT_DIALOG", "Leave"));
    m_ui->cmdCancel->setText(language.Text("SCRIPT_DIALOG", "Stay"));
    // Enter pressed too soon must not lose what was typed.
    m_ui->cmdCancel->setDefault(true);
    m_ui->cmdCancel->setFocus();
  }
}

TScriptDialog::~TScriptDialog() = default;

void TScriptDialog::SetValue(const QString &value) {
  m_ui->txtValue->setText(value);
  m_ui->txtValue->selectAll();
}

QString TScriptDialog::Value() const {
  return m_ui->txtValue->text();
}

void TScriptDialog::OfferToKeep(bool offer) {
  m_ui->chkKeep->setVisible(offer);
}

bool TScriptDialog::KeepFromOpening() const {
  return m_ui->chkKeep->isChecked();
}

void TScriptDialog::showEvent(QShowEvent *event) {
  QPlainTextEdit &message = *m_ui->mmoMessage;
  const int width = fontMetrics().averageCharWidth() * TextWidthInCharacters;
  QTextDocument measure;
  measure.setDefaultFont(message.font());
  measure.setDefaultTextOption(QTextOption(message.document()->defaultTextOption()));
  measure.setPlainText(message.toPlainText());
  measure.setTextWidth(width);
  const int margin = qCeil(2 * message.document()->documentMargin());
  const int wanted = qCeil(measure.size().height()) + margin;
  const int most = fontMetrics().lineSpacing() * MostLines;
  message.setMinimumSize(width + margin, qMin(wanted, most));
  // Only what scrolls has a use for more room.
  if (wanted <= most) message.setFixedHeight(wanted);
  m_ui->lblOrigin->setMinimumHeight(m_ui->lblOrigin->heightForWidth(width));
  adjustSize();
  QDialog::showEvent(event);
}
