#include "browser/page/properties_dialog.h"

#include <QLocale>

#include "config/language.h"
#include "ui_properties_dialog.h"

namespace {

constexpr int FieldWidthInCharacters = 64;
constexpr int CertificateLines = 8;
constexpr int LongestText = 4000;  // an address may hold a whole picture

// Here the lowest level has a text too.
TTextKey LevelText(TEncryptionLevel level) {
  return level == TEncryptionLevel::None ? TTextKey{"PROPERTIES", "NotEncrypted"} : EncryptionText(level);
}

QString Shortened(const QString &text) {
  return text.size() > LongestText ? text.left(LongestText) + QChar(0x2026) : text;
}

}  // namespace

TPropertiesDialog::TPropertiesDialog(const TPageProperties &properties, const TLanguage &language, QWidget *parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::TPropertiesDialog>()) {
  m_ui->setupUi(this);
  language.TranslateForm(this, "PROPERTIES");
  const QString unknown = language.Text("PROPERTIES", "Unknown");
  const auto fill = [this, &unknown](QLineEdit *field, const QString &text) {
    QPalette flat = field->palette();
    flat.setColor(QPalette::Base, palette().color(QPalette::Window));
    flat.setColor(QPalette::Text, palette().color(QPalette::WindowText));
    field->setPalette(flat);
    field->setMinimumWidth(fontMetrics().averageCharWidth() * FieldWidthInCharacters);
    field->setText(text.isEmpty() ? unknown : Shortened(text.simplified()));
    field->setCursorPosition(0);
  };
  QString size;
  if (properties.size >= 0) {
    const QLocale locale;
    size = language.Text("PROPERTIES", "SizeText")
               .arg(locale.formattedDataSize(properties.size, 1, QLocale::DataSizeTraditionalFormat),
                    locale.toString(properties.size));
  }
  fill(m_ui->txtTitle, properties.title);
  fill(m_ui->txtAddress, properties.address);
  fill(m_ui->txtType, properties.contentType);
  fill(m_ui->txtSize, size);
  fill(m_ui->txtModified, properties.modified);
  fill(m_ui->txtEncryption, language.Text(LevelText(properties.encryptionLevel)));
  fill(m_ui->txtZone, properties.zone);
  m_ui->mmoCertificate->setPlainText(Shortened(properties.certificate));
  m_ui->mmoCertificate->setMinimumHeight(fontMetrics().lineSpacing() * CertificateLines);
  const bool hasCertificate = !properties.certificate.isEmpty();
  m_ui->lblCertificate->setVisible(hasCertificate);
  m_ui->mmoCertificate->setVisible(hasCertificate);
  m_ui->cmdOK->setFocus();
}

TPropertiesDialog::~TPropertiesDialog() = default;

void TPropertiesDialog::AddSection(QWidget *section) {
  m_ui->layMain->insertWidget(m_ui->layMain->count() - 1, section);
}
