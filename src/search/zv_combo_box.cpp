#include "search/zv_combo_box.h"

#include <algorithm>
#include <QAbstractItemView>
#include <QDropEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QRegularExpression>
#include <QWheelEvent>
#include <utility>

#include "browser/engine/address.h"
#include "browser/strip/link_mime.h"
#include "platform/web_address.h"
#include "search/address_field_style.h"
#include "search/host_emphasis.h"
#include "search/row_delegate.h"
#include "ui/shown_address.h"

namespace {

constexpr int AddressRole = Qt::UserRole;
constexpr qsizetype LongestDroppedText = 8192;

bool IsEnter(const QKeyEvent &key) {
  return key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
}

// These keys belong to the box while it has the keyboard, whatever they do elsewhere.
bool IsOwnKey(const QKeyEvent &key) {
  const bool plain = key.modifiers() == Qt::NoModifier;
  return IsEnter(key) || (plain && (key.key() == Qt::Key_Escape || key.key() == Qt::Key_F4)) ||
         (key.key() == Qt::Key_Down && key.modifiers().testFlag(Qt::AltModifier));
}

bool IsRemoveKey(const QKeyEvent &key) {
  return key.key() == Qt::Key_Delete && key.modifiers().testFlag(Qt::ShiftModifier);
}

}  // namespace

TZVComboBox::TZVComboBox(QWidget *parent) : QComboBox(parent) {
  setEditable(true);
  setInsertPolicy(QComboBox::NoInsert);
  setCompleter(nullptr);
  // By itself the box takes it for a choice from the list when it is left with a text that stands there.
  disconnect(lineEdit(), &QLineEdit::editingFinished, this, nullptr);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  setMinimumContentsLength(10);
  setAcceptDrops(true);
  auto *style = new TAddressFieldStyle;
  style->setParent(this);
  setStyle(style);
  new THostEmphasis(lineEdit());
  // The box has the keyboard in its line edit's stead and hands keys on past any filter, so it filters its own as well.
  installEventFilter(this);
  lineEdit()->installEventFilter(this);
  view()->installEventFilter(this);
  view()->setTextElideMode(Qt::ElideRight);
  setItemDelegate(new TRowDelegate(this));
  connect(lineEdit(), &QLineEdit::textEdited, this, &TZVComboBox::TakeEdited);
  connect(lineEdit(), &QLineEdit::textChanged, this, [this](const QString &text) { m_lastText = text; });
}

void TZVComboBox::ShowAddress(const QString &address) {
  m_pageAddress = address;
  if (m_typed && lineEdit()->hasFocus()) return;
  PutBack();
}

// A script that comes in one piece was not typed. Whoever was talked into pasting it would let a stranger act in the
// page, so it loses what makes it one; typed letter by letter it runs.
void TZVComboBox::TakeEdited(const QString &text) {
  m_typed = true;
  static const QRegularExpression script(QStringLiteral("^\\s*(javascript:\\s*)+"),
                                         QRegularExpression::CaseInsensitiveOption);
  const QRegularExpressionMatch match = script.match(text);
  const bool isTyped = m_lastText.trimmed().startsWith(QLatin1String("javascript"), Qt::CaseInsensitive);
  if (!match.hasMatch() || isTyped) return;
  lineEdit()->setText(text.sliced(match.capturedEnd()));
}

void TZVComboBox::PutBack() {
  m_typed = false;
  const QString shown = ShownAddress(m_pageAddress);
  const bool hasKeyboard = hasFocus() || lineEdit()->hasFocus();
  if (lineEdit()->text() == shown) {
    // The host is what is to be seen of a long address.
    if (!hasKeyboard) lineEdit()->setCursorPosition(0);
    return;
  }
  // Text that was there to be typed over stays so.
  const bool toTypeOver = hasFocus() && lineEdit()->selectedText() == lineEdit()->text();
  setEditText(shown);
  lineEdit()->setCursorPosition(0);
  if (toTypeOver) lineEdit()->selectAll();
}

void TZVComboBox::FocusAll() {
  lineEdit()->setFocus(Qt::ShortcutFocusReason);
  lineEdit()->selectAll();
}

void TZVComboBox::SetEntries(const QStringList &addresses) {
  const QString text = lineEdit()->text();
  const int cursor = lineEdit()->cursorPosition();
  const int start = lineEdit()->selectionStart();
  const int length = int(lineEdit()->selectedText().size());
  const QSignalBlocker quietBox(this);
  const QSignalBlocker quietEdit(lineEdit());
  clear();
  for (const QString &address : addresses) addItem(ShownAddress(address), address);
  setCurrentIndex(-1);
  lineEdit()->setText(text);
  lineEdit()->setCursorPosition(cursor);
  if (start >= 0) lineEdit()->setSelection(start, length);
}

QString TZVComboBox::EntryAddress(int row) const {
  return itemData(row, AddressRole).toString();
}

void TZVComboBox::ShowTyped(const QString &text, qsizetype selectFrom) {
  m_typed = true;
  lineEdit()->setText(text);
  lineEdit()->setSelection(int(text.size()), -int(std::max<qsizetype>(text.size() - selectFrom, 0)));
}

bool TZVComboBox::eventFilter(QObject *watched, QEvent *event) {
  const bool isKeyboard = event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress ||
                          event->type() == QEvent::FocusOut || event->type() == QEvent::FocusIn;
  if ((watched == lineEdit() || (watched == this && isKeyboard)) && FilterEdit(event)) return true;
  if (watched == view() && FilterList(event)) return true;
  return QComboBox::eventFilter(watched, event);
}

bool TZVComboBox::FilterEdit(QEvent *event) {
  switch (event->type()) {
    case QEvent::ShortcutOverride:
      if (!IsOwnKey(*static_cast<QKeyEvent *>(event))) return false;
      event->accept();
      return true;
    case QEvent::KeyPress: {
      const auto *key = static_cast<QKeyEvent *>(event);
      if (TakeKey(*key)) return true;
      if (key->key() != Qt::Key_Escape) return false;
      const bool nothingTyped = !m_typed;
      PutBack();
      lineEdit()->selectAll();
      if (nothingTyped) Q_EMIT Left();
      return true;
    }
    case QEvent::FocusIn:
      m_selectOnRelease = static_cast<QFocusEvent *>(event)->reason() == Qt::MouseFocusReason;
      return false;
    case QEvent::MouseButtonRelease:
      // The click that brings the keyboard here is for typing over the whole address, unless it has selected a part.
      if (std::exchange(m_selectOnRelease, false) && !lineEdit()->hasSelectedText()) lineEdit()->selectAll();
      return false;
    case QEvent::FocusOut:
      // Moving to a menu or another window keeps what was typed; going back to the page gives it up.
      if (static_cast<QFocusEvent *>(event)->reason() == Qt::MouseFocusReason) PutBack();
      return false;
    case QEvent::DragEnter:
    case QEvent::DragMove: {
      auto *drag = static_cast<QDropEvent *>(event);
      if (drag->source() == this) {
        // The page that is shown has nowhere to go here.
        drag->ignore();
        return true;
      }
      if (DroppedAddress(*drag).isEmpty()) return false;
      drag->acceptProposedAction();
      return true;
    }
    case QEvent::Drop: {
      auto *drop = static_cast<QDropEvent *>(event);
      if (DroppedAddress(*drop).isEmpty()) return false;
      dropEvent(drop);
      return true;
    }
    default:
      return false;
  }
}

bool TZVComboBox::FilterList(QEvent *event) {
  if (event->type() != QEvent::KeyPress && event->type() != QEvent::ShortcutOverride) return false;
  if (!IsRemoveKey(*static_cast<QKeyEvent *>(event))) return false;
  event->accept();
  const int row = view()->currentIndex().row();
  if (event->type() == QEvent::ShortcutOverride || row < 0) return true;
  RemoveEntry(EntryAddress(row));
  if (count() == 0) {
    hidePopup();
  } else {
    showPopup();  // as high as the entries that are left
    view()->setCurrentIndex(model()->index(std::min(row, count() - 1), modelColumn()));
  }
  return true;
}

// A text that is dragged about in the box itself is only moved.
QString TZVComboBox::DroppedAddress(const QDropEvent &event) const {
  if (event.source() == lineEdit() || event.source() == this || event.mimeData() == nullptr) return {};
  const QStringList links = LinksIn(*event.mimeData());
  if (!links.isEmpty()) return links.first();
  // A host name without its scheme, with or without a port, is an address as well; a word or a script is not.
  const QString text = event.mimeData()->text().trimmed();
  const bool isOneWord = std::ranges::none_of(text, [](QChar c) { return c.isSpace(); });
  if (!isOneWord || text.size() > LongestDroppedText) return {};
  const TAddress address(text);
  if (address.Kind() != TAddress::TKind::Url) return {};
  if (address.Url().isLocalFile()) return text;
  if (!WebAddress::Is(address.Url())) return {};
  const bool isHost = text.contains(u'.') || address.Url().host() == QLatin1String("localhost");
  return isHost ? text : QString();
}

void TZVComboBox::dragEnterEvent(QDragEnterEvent *event) {
  if (!DroppedAddress(*event).isEmpty()) event->acceptProposedAction();
}

void TZVComboBox::dropEvent(QDropEvent *event) {
  const QString address = DroppedAddress(*event);
  if (address.isEmpty()) return;
  event->acceptProposedAction();
  TakeDropped(address);
}

void TZVComboBox::wheelEvent(QWheelEvent *event) {
  event->ignore();
}
