#include "browser/page/sign_in_dialog.h"

#include <QStyle>

#include "config/language.h"
#include "ui_sign_in_dialog.h"

namespace {

constexpr int TextWidthInCharacters = 50;
constexpr int LongestRealm = 160;

}  // namespace

TSignInDialog::TSignInDialog(const QString &prompt, const QString &realm, bool encrypted, const TLanguage &language,
                             QWidget *owner)
    : QDialog(owner), m_language(language), m_ui(std::make_unique<Ui::TSignInDialog>()) {
  m_ui->setupUi(this);
  language.TranslateForm(this, "SIGN_IN");
  QFont bold = font();
  bold.setBold(true);
  m_ui->lblHost->setFont(bold);
  m_ui->lblHost->setText(prompt);
  const QString said = realm.simplified().left(LongestRealm);
  m_ui->lblRealm->setText(language.Text("SIGN_IN", "Realm").arg(said));
  m_ui->lblRealm->setVisible(!said.isEmpty());
  const int iconSize = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
  m_ui->imgWarning->setPixmap(QIcon(":/icons/warning.svg").pixmap(iconSize));
  m_ui->imgWarning->setVisible(!encrypted);
  m_ui->lblWarning->setVisible(!encrypted);
  m_ui->txtUser->setFocus();
}

TSignInDialog::~TSignInDialog() = default;

void TSignInDialog::SetRefused(const QString &user) {
  m_ui->lblHost->setText(m_language.Text("SIGN_IN", "Refused") + u'\n' + m_ui->lblHost->text());
  m_ui->txtUser->setText(user);
  m_ui->txtPassword->setFocus();
}

QString TSignInDialog::User() const {
  return m_ui->txtUser->text();
}

QString TSignInDialog::Password() const {
  return m_ui->txtPassword->text();
}

void TSignInDialog::showEvent(QShowEvent *event) {
  const int width = fontMetrics().averageCharWidth() * TextWidthInCharacters;
  QStringList lines;
  for (QLabel *label : {m_ui->lblHost, m_ui->lblRealm, m_ui->lblWarning}) {
    label->setMinimumSize(width, label->heightForWidth(width));
    if (!label->isHidden()) lines.append(label->text());
  }
  setAccessibleDescription(lines.join(u'\n'));
  adjustSize();
  QDialog::showEvent(event);
}
