#include "app/address_box.h"

#include <QKeyEvent>
#include <QLineEdit>

TAddressBox::TAddressBox(QWidget *parent) : QComboBox(parent) {
  setObjectName(QStringLiteral("cboAddress"));
  setEditable(true);
  setInsertPolicy(QComboBox::NoInsert);
  setCompleter(nullptr);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  setMinimumContentsLength(10);
  connect(lineEdit(), &QLineEdit::textEdited, this, [this] { m_typed = true; });
}

void TAddressBox::ShowAddress(const QString &address) {
  m_pageAddress = address;
  if (m_typed && hasFocus()) return;
  PutBack();
}

void TAddressBox::PutBack() {
  m_typed = false;
  const QString shown = m_pageAddress == QLatin1String("about:blank") ? QString() : m_pageAddress;
  if (lineEdit()->text() == shown) return;
  // Text that was there to be typed over stays so.
  const bool toTypeOver = hasFocus() && lineEdit()->selectedText() == lineEdit()->text();
  setEditText(shown);
  lineEdit()->setCursorPosition(0);
  if (toTypeOver) lineEdit()->selectAll();
}

void TAddressBox::FocusAll() {
  lineEdit()->setFocus(Qt::ShortcutFocusReason);
  lineEdit()->selectAll();
}

void TAddressBox::Open(bool newTab) {
  const QString text = lineEdit()->text().trimmed();
  m_typed = false;
  if (!text.isEmpty()) Q_EMIT OpenRequested(text, newTab);
}

// A combo box has the keyboard itself and hands keys on to its line edit, so this is where they are met.
bool TAddressBox::event(QEvent *event) {
  if (event->type() == QEvent::ShortcutOverride) {
    // These keys belong to the box while it has the keyboard, whatever they do elsewhere.
    const int key = static_cast<QKeyEvent *>(event)->key();
    if (key == Qt::Key_Escape || key == Qt::Key_Return || key == Qt::Key_Enter) {
      event->accept();
      return true;
    }
  }
  return QComboBox::event(event);
}

void TAddressBox::keyPressEvent(QKeyEvent *event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    Open(event->modifiers().testFlag(Qt::AltModifier));
  } else if (event->key() == Qt::Key_Escape) {
    const bool nothingTyped = !m_typed;
    PutBack();
    lineEdit()->selectAll();
    if (nothingTyped) Q_EMIT Left();
  } else {
    QComboBox::keyPressEvent(event);
  }
}

void TAddressBox::focusOutEvent(QFocusEvent *event) {
  // Moving to a menu or another window keeps what was typed; going back to the page gives it up.
  if (event->reason() == Qt::MouseFocusReason) PutBack();
  QComboBox::focusOutEvent(event);
}
