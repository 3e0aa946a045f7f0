#include "search/host_emphasis.h"

#include <algorithm>
#include <QCoreApplication>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QScopedValueRollback>
#include <QTextCharFormat>

namespace {

constexpr float QuietOpacity = 0.6F;

}  // namespace

THostEmphasis::THostEmphasis(QLineEdit *edit) : QObject(edit), m_edit(edit) {
  edit->installEventFilter(this);
  // In a box it is this one that has the keyboard.
  if (edit->focusProxy() != nullptr) edit->focusProxy()->installEventFilter(this);
  connect(edit, &QLineEdit::textChanged, this, &THostEmphasis::Show);
}

THostEmphasis::TRange THostEmphasis::HostIn(const QString &address) {
  const qsizetype scheme = address.indexOf(QLatin1String("://"));
  if (scheme <= 0) return {};
  qsizetype start = scheme + 3;
  qsizetype end = start;
  while (end < address.size() && !QStringView(u"/?#\\").contains(address.at(end))) ++end;
  const qsizetype user = QStringView(address).sliced(start, end - start).lastIndexOf(u'@');
  if (user >= 0) start += user + 1;
  const QStringView host = QStringView(address).sliced(start, end - start);
  // Colons in brackets are those of an IPv6 address.
  const qsizetype port = host.indexOf(u':', std::max<qsizetype>(host.indexOf(u']'), 0));
  if (port >= 0) end = start + port;
  return {start, end - start};
}

bool THostEmphasis::eventFilter(QObject *watched, QEvent *event) {
  switch (event->type()) {
    case QEvent::FocusIn:
    case QEvent::FocusOut:
    case QEvent::PaletteChange:
      QMetaObject::invokeMethod(this, &THostEmphasis::Show, Qt::QueuedConnection);
      break;
    default:
      break;
  }
  return QObject::eventFilter(watched, event);
}

// The toolkit's line edit has no text formats of its own but those of an input method.
void THostEmphasis::Show() {
  // What is being typed, by an input method too, is left alone; only its formats go once, when the keyboard comes.
  if (m_isShowing || (m_edit->hasFocus() && !m_hasFormats)) return;
  const QScopedValueRollback showing(m_isShowing, true);
  QList<QInputMethodEvent::Attribute> attributes;
  const QString text = m_edit->text();
  if (const TRange host = HostIn(text); host.length > 0 && !m_edit->hasFocus()) {
    QColor ink = m_edit->palette().color(QPalette::Text);
    ink.setAlphaF(QuietOpacity);
    QTextCharFormat quiet;
    quiet.setForeground(ink);
    const auto add = [&](qsizetype start, qsizetype end) {
      const int fromCaret = int(start) - m_edit->cursorPosition();
      if (end > start) attributes.append({QInputMethodEvent::TextFormat, fromCaret, int(end - start), quiet});
    };
    add(0, host.start);
    add(host.start + host.length, text.size());
  }
  m_hasFormats = !attributes.isEmpty();
  QInputMethodEvent event(QString(), attributes);
  QCoreApplication::sendEvent(m_edit, &event);
}
