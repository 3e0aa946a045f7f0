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
  lineEdit()->installEventFilter(this);
  connect(lineEdit(), &QLineEdit::textEdited, this, [this] { m_typed = true; });
}

void TAddressBox::ShowAddress(const QString &address) {
  m_pageAddress = address;
  if (m_typed && lineEdit()->hasFocus()) return;
  PutBack();
}

void TAddressBox::PutBack() {
  m_typed = false;
  const QString shown = m_pageAddress == QLatin1String("about:blank") ? QString() : m_pageAddress;
  if (lineEdit()->text() == shown) return;
  setEditText(shown);
  lineEdit()->setCursorPosition(0);
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

bool TAddressBox::eventFilter(QObject *watched, QEvent *event) {
  if (watched == lineEdit() && event->type() == QEvent::ShortcutOverride) {
    // These keys belong to the box while it has the keyboard, whatever they do elsewhere.
    const int key = static_cast<QKeyEvent *>(event)->key();
    if (key == Qt::Key_Escape || key == Qt::Key_Return || key == Qt::Key_Enter) {
      event->accept();
      return true;
    }
  }
  if (watched == lineEdit() && event->type() == QEvent::KeyPress) {
    const auto *key = static_cast<QKeyEvent *>(event);
    if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
      Open(key->modifiers().testFlag(Qt::AltModifier));
      return true;
    }
    if (key->key() == Qt::Key_Escape) {
      const bool nothingTyped = !m_typed;
      PutBack();
      lineEdit()->selectAll();
      if (nothingTyped) Q_EMIT Left();
      return true;
    }
  }
  if (watched == lineEdit() && event->type() == QEvent::FocusOut) {
    // Moving to a menu or another window keeps what was typed; going back to the page gives it up.
    if (static_cast<QFocusEvent *>(event)->reason() == Qt::MouseFocusReason) PutBack();
  }
  return QComboBox::eventFilter(watched, event);
}
