#include "chrome/side_bar/forget_dialog.h"

#include "config/language.h"
#include "ui_forget_dialog.h"

namespace {

constexpr qint64 Hour = 3600;  // seconds, whatever clocks are put forward or back
constexpr qint64 Day = 24 * Hour;
constexpr qint64 Week = 7 * Day;

}  // namespace

TfrmForget::TfrmForget(const TLanguage &language, QWidget *owner)
    : QDialog(owner), m_ui(std::make_unique<Ui::TfrmForget>()) {
  m_ui->setupUi(this);
  language.TranslateForm(this, "HISTORY");
  layout()->setSizeConstraint(QLayout::SetFixedSize);
}

TfrmForget::~TfrmForget() = default;

TForgetting TfrmForget::Choice(const QDateTime &now) const {
  TForgetting choice{.typedAddresses = m_ui->chkTyped->isChecked(),
                     .cookies = m_ui->chkCookies->isChecked(),
                     .cache = m_ui->chkCache->isChecked(),
                     .permissions = m_ui->chkPermissions->isChecked()};
  if (m_ui->rdoHour->isChecked()) choice.since = now.addSecs(-Hour);
  if (m_ui->rdoDay->isChecked()) choice.since = now.addSecs(-Day);
  if (m_ui->rdoWeek->isChecked()) choice.since = now.addSecs(-Week);
  return choice;
}
