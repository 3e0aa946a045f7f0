#include "browser/page/question_sheet.h"

#include <QAccessible>
#include <QApplication>
#include <QDialog>
#include <QPainter>

#include "ui/close_button.h"

namespace {

constexpr int Shade = 110;   // of 255: how dark the page gets
constexpr int TopGap = 32;   // pixels above the question, where there is room
constexpr int Outline = 80;  // of 255

}  // namespace

TQuestionSheet::TQuestionSheet(QWidget *page) : QWidget(page) {
  setObjectName(QStringLiteral("questionSheet"));
  setFocusPolicy(Qt::StrongFocus);
  page->installEventFilter(this);
  hide();
}

TQuestionSheet::~TQuestionSheet() {
  Dismiss();
}

void TQuestionSheet::Ask(QDialog *dialog, std::function<void(bool accepted)> done) {
  // Who is to have the keyboard first is known as long as the dialog is a window.
  dialog->setFocusProxy(dialog->focusWidget());
  dialog->setParent(this, Qt::Widget);
  dialog->setAutoFillBackground(true);
  dialog->hide();
  dialog->installEventFilter(this);
  m_dialogs.append(dialog);
  connect(dialog, &QDialog::finished, this,
          [this, dialog, done = std::move(done)](int result) { Finish(dialog, result == QDialog::Accepted, done); });
  if (m_dialogs.size() == 1) ShowFirst();
}

void TQuestionSheet::Dismiss() {
  while (IsOpen()) m_dialogs.last()->reject();
}

void TQuestionSheet::Finish(QDialog *dialog, bool accepted, const std::function<void(bool)> &done) {
  if (!m_dialogs.removeOne(dialog)) return;
  const QPointer<TQuestionSheet> self(this);
  done(accepted);
  if (!self) return;
  // It may be at work in this very call.
  dialog->deleteLater();
  ShowFirst();
}

void TQuestionSheet::ShowFirst() {
  if (!IsOpen()) {
    if (isHidden()) return;
    // Before the sheet goes: the page is to get the keyboard back from it.
    Q_EMIT OpenChanged(false);
    hide();
    return;
  }
  QDialog *first = m_dialogs.first();
  if (!first->isHidden()) return;
  // A place of its own keeps the dialog from looking for one on the screen.
  first->move(0, 0);
  setGeometry(parentWidget()->rect());
  first->show();
  show();
  raise();
  Arrange();
  setFocusProxy(first->focusProxy() != nullptr ? first->focusProxy() : first);
  // Whoever types into the address bar goes on; whoever was in the page finds himself in its question.
  const QWidget *focused = QApplication::focusWidget();
  if (focused != nullptr && (focused == parentWidget() || parentWidget()->isAncestorOf(focused))) setFocus();
  QAccessibleEvent event(first, QAccessible::Alert);
  QAccessible::updateAccessibility(&event);
  Q_EMIT OpenChanged(true);
}

void TQuestionSheet::Arrange() {
  if (!IsOpen()) return;
  QDialog *first = m_dialogs.first();
  const QSize wanted = first->sizeHint().expandedTo(first->minimumSize());
  first->resize(wanted.boundedTo(size()));
  first->move((width() - first->width()) / 2, qBound(0, (height() - first->height()) / 2, TopGap));
}

bool TQuestionSheet::eventFilter(QObject *watched, QEvent *event) {
  if (watched == parent() && event->type() == QEvent::Resize) {
    setGeometry(parentWidget()->rect());
    Arrange();
  }
  if (watched != parent() && event->type() == QEvent::Hide) {
    // The toolkit would move the keyboard on to whatever comes next in the window.
    const auto *dialog = static_cast<QWidget *>(watched);
    if (dialog->isAncestorOf(QApplication::focusWidget())) {
      setFocusProxy(nullptr);
      setFocus();
    }
  }
  return QWidget::eventFilter(watched, event);
}

bool TQuestionSheet::event(QEvent *event) {
  // Escape answers the question, whatever the window has it for.
  return ClaimEscape(*event) || QWidget::event(event);
}

void TQuestionSheet::paintEvent(QPaintEvent *) {
  QPainter painter(this);
  painter.fillRect(rect(), QColor(0, 0, 0, Shade));
  if (!IsOpen()) return;
  painter.setPen(QColor(0, 0, 0, Shade + Outline));
  painter.drawRect(m_dialogs.first()->geometry().adjusted(-1, -1, 0, 0));
}
