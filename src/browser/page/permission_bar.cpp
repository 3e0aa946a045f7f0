#include "browser/page/permission_bar.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>

#include "config/language.h"
#include "ui/close_button.h"

namespace {

constexpr int Margin = 6;
constexpr int WakeDelay = 500;  // ms until the buttons take clicks

struct TAnswer {
  const char *name;
  TTextKey text;
  TPermissionDecision decision;
};
constexpr TAnswer Answers[] = {
    {"cmdAllow", {"PERMISSIONS", "Allow"}, TPermissionDecision::Allowed},
    {"cmdDeny", {"PERMISSIONS", "Deny"}, TPermissionDecision::RefusedForNow},
    {"cmdNever", {"PERMISSIONS", "Never"}, TPermissionDecision::Refused},
};

}  // namespace

TPermissionBar::TPermissionBar(const TLanguage &language, QWidget *parent) : QFrame(parent) {
  setObjectName("PermissionBar");
  setFrameShape(QFrame::StyledPanel);
  setAutoFillBackground(true);
  setBackgroundRole(QPalette::ToolTipBase);
  setForegroundRole(QPalette::ToolTipText);
  m_question = new QLabel(this);
  m_question->setObjectName("lblQuestion");
  m_question->setTextFormat(Qt::PlainText);
  m_question->setWordWrap(true);
  m_question->setForegroundRole(QPalette::ToolTipText);
  auto *close = new TCloseButton(language.Text("PERMISSIONS", "NotNow"), this);
  close->setForegroundRole(QPalette::ToolTipText);
  m_close = close;

  auto *layout = new QHBoxLayout(this);
  layout->setContentsMargins(Margin, Margin, Margin, Margin);
  layout->addWidget(m_question, 1);
  for (const TAnswer &answer : Answers) {
    auto *button = new QPushButton(language.Text(answer.text), this);
    button->setObjectName(QString::fromLatin1(answer.name));
    connect(button, &QPushButton::clicked, this, [this, decision = answer.decision] { Q_EMIT Answered(decision); });
    layout->addWidget(button);
    m_buttons.append(button);
  }
  layout->addWidget(close);

  m_wake.setSingleShot(true);
  m_wake.setInterval(WakeDelay);
  connect(&m_wake, &QTimer::timeout, this, [this] { SetButtonsEnabled(true); });
  connect(close, &TCloseButton::clicked, this, [this] { Q_EMIT Answered(TPermissionDecision::Ask); });
  hide();
}

// Whoever leads the keyboard into the page comes before what lies in it, and with it this bar; the Tab key would pass
// by the question.
void TPermissionBar::ComeBeforePage() {
  QWidget *page = parentWidget();
  while (page->parentWidget() != nullptr && page->parentWidget()->focusProxy() != nullptr) page = page->parentWidget();
  QWidget *previous = page->previousInFocusChain();
  if (previous == m_close) return;
  // The toolkit puts nothing behind a widget that takes no keyboard.
  while (previous != page && previous->focusPolicy() == Qt::NoFocus) previous = previous->previousInFocusChain();
  for (QWidget *stop : m_buttons) {
    setTabOrder(previous, stop);
    previous = stop;
  }
  setTabOrder(previous, m_close);
}

void TPermissionBar::Ask(const QString &question) {
  m_question->setText(question);
  setAccessibleName(question);
  SetButtonsEnabled(false);
  if (parentWidget() != nullptr) ComeBeforePage();
  show();
  m_wake.start();
  // The bar does not take the keyboard, so a screen reader has to be told that it is there.
  QAccessibleEvent event(this, QAccessible::Alert);
  QAccessible::updateAccessibility(&event);
}

bool TPermissionBar::event(QEvent *event) {
  return ClaimEscape(*event) || QFrame::event(event);
}

void TPermissionBar::keyPressEvent(QKeyEvent *event) {
  if (event->key() == Qt::Key_Escape) {
    Q_EMIT Answered(TPermissionDecision::Ask);
    return;
  }
  QFrame::keyPressEvent(event);
}

void TPermissionBar::SetButtonsEnabled(bool enabled) {
  for (QPushButton *button : m_buttons) button->setEnabled(enabled);
}
