#include "config/language_properties.h"

#include <algorithm>
#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QAction>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QSpinBox>
#include <QTextEdit>

namespace {

struct TClassProperty {
  const QMetaObject *metaObject;
  const char *property;
  TTextKind kind;
};

// What stands for the five text properties of a component in this toolkit. A caption is what the component shows as its
// name; hints are all the texts that explain it.
const TClassProperty ClassProperties[] = {
    {&QAction::staticMetaObject, "text", TTextKind::Caption},
    {&QAction::staticMetaObject, "toolTip", TTextKind::Hint},
    {&QAction::staticMetaObject, "statusTip", TTextKind::Hint},
    {&QAction::staticMetaObject, "whatsThis", TTextKind::Hint},
    {&QWidget::staticMetaObject, "windowTitle", TTextKind::Caption},
    {&QWidget::staticMetaObject, "toolTip", TTextKind::Hint},
    {&QWidget::staticMetaObject, "statusTip", TTextKind::Hint},
    {&QWidget::staticMetaObject, "whatsThis", TTextKind::Hint},
    {&QWidget::staticMetaObject, "accessibleName", TTextKind::Hint},
    {&QWidget::staticMetaObject, "accessibleDescription", TTextKind::Hint},
    {&QAbstractButton::staticMetaObject, "text", TTextKind::Caption},
    {&QLabel::staticMetaObject, "text", TTextKind::Caption},
    {&QMenu::staticMetaObject, "title", TTextKind::Title},
    {&QGroupBox::staticMetaObject, "title", TTextKind::Title},
    {&QLineEdit::staticMetaObject, "text", TTextKind::Text},
    {&QLineEdit::staticMetaObject, "placeholderText", TTextKind::Text},
    {&QComboBox::staticMetaObject, "placeholderText", TTextKind::Text},
    {&QPlainTextEdit::staticMetaObject, "plainText", TTextKind::Text},
    {&QPlainTextEdit::staticMetaObject, "placeholderText", TTextKind::Text},
    {&QTextEdit::staticMetaObject, "plainText", TTextKind::Text},
    {&QTextEdit::staticMetaObject, "placeholderText", TTextKind::Text},
    {&QAbstractSpinBox::staticMetaObject, "specialValueText", TTextKind::Text},
    {&QSpinBox::staticMetaObject, "prefix", TTextKind::Text},
    {&QSpinBox::staticMetaObject, "suffix", TTextKind::Text},
    {&QDoubleSpinBox::staticMetaObject, "prefix", TTextKind::Text},
    {&QDoubleSpinBox::staticMetaObject, "suffix", TTextKind::Text},
};

// Properties of these names count for every class that declares one.
constexpr struct {
  const char *property;
  TTextKind kind;
} NamedProperties[] = {
    {"Caption", TTextKind::Caption}, {"Title", TTextKind::Title}, {"Filter", TTextKind::Filter},
    {"Hint", TTextKind::Hint},       {"Text", TTextKind::Text},
};

}  // namespace

QList<TTextProperty> TextProperties(const QMetaObject &metaObject) {
  QList<TTextProperty> properties;
  const auto add = [&](const char *name, TTextKind kind) {
    const QMetaProperty property = metaObject.property(metaObject.indexOfProperty(name));
    if (property.isReadable() && property.isWritable() && property.typeId() == QMetaType::QString) {
      properties.append({kind, property});
    }
  };
  for (const TClassProperty &known : ClassProperties) {
    if (metaObject.inherits(known.metaObject)) add(known.property, known.kind);
  }
  for (const auto &named : NamedProperties) add(named.property, named.kind);
  std::ranges::stable_sort(properties, {}, &TTextProperty::kind);
  return properties;
}
