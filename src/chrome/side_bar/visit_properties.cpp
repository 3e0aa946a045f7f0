#include "chrome/side_bar/visit_properties.h"

#include <QLocale>

#include "config/language.h"
#include "history/history_store.h"
#include "ui/shown_text.h"
#include "ui_visit_properties.h"

namespace {

constexpr int FieldWidthInCharacters = 60;

}  // namespace

TfrmVisitProperties::TfrmVisitProperties(const TLanguage &language, const TVisitedPage &page, QWidget *owner)
    : QDialog(owner), m_ui(std::make_unique<Ui::TfrmVisitProperties>()) {
  m_ui->setupUi(this);
  language.TranslateForm(this, "HISTORY");
  const QLocale locale(language.LocaleName());
  const auto fill = [](QLineEdit *field, const QString &text) {
    field->setText(OneLine(text));
    field->setCursorPosition(0);
  };
  fill(m_ui->edtTitle, page.title);
  // As it is, for whoever wants to copy it.
  fill(m_ui->edtAddress, page.address);
  fill(m_ui->edtFirst, locale.toString(page.firstVisit, QLocale::LongFormat));
  fill(m_ui->edtLast, locale.toString(page.lastVisit, QLocale::LongFormat));
  fill(m_ui->edtVisits, locale.toString(page.visits));
  m_ui->edtAddress->setMinimumWidth(fontMetrics().averageCharWidth() * FieldWidthInCharacters);
}

TfrmVisitProperties::~TfrmVisitProperties() = default;
