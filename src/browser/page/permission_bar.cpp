#include "browser/page/permission_bar.h"

#include <QAccessible>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>

#include "config/language.h"
#include "ui/click_guard.h"
#include "ui/close_button.h"
#include "ui/flow_layout.h"

namespace {

constexpr int Margin = 10;
constexpr int Distance = 6;
constexpr int Width = 440;  // where there is room

struct TAnswer {
  const char *name;
  TTextKey text;
  TPermissionDecision decision;
};
constexpr TAnswer Answers[] = {
    {"cmdAllow", {"PERMISSIONS", "Allow"}, TPermissionDecision::Allowed},
    {"cmdAllowNow", {"PERMISSIONS", "AllowNow"}, TPermissionDecision::AllowedForNow},
    {"cmdDeny", {"PERMISSIONS", "Deny"}, TPermissionDecision::RefusedForNow},
    {"cmdNever", {"PERMISSIONS", "Never"}, TPermissionDecision::Refused},
};

}  // namespace

TPermissionBar::TPermissionBar(const TLanguage &language, QWidget *parent) : TFloatingPanel(parent) {
  setObjectName("PermissionBar");
  m_question = new QLabel(this);
  m_question->setObjectName("lblQuestion");
  m_question->setTextFormat(Qt::PlainText);
  m_question->setWordWrap(true);
  auto *close = new TCloseButton(language.Text("PERMISSIONS", "NotNow"), this);
  m_close = close;

  auto *layout = new QGridLayout(this);
  layout->setContentsMargins(Margin, Margin, Margin, Margin);
  layout->addWidget(m_question, 0, 0);
  layout->addWidget(close, 0, 1, Qt::AlignTop);
  auto *row = new TFlowLayout(Distance, true);
  QList<QAbstractButton *> guarded;
  for (const TAnswer &answer : Answers) {
    auto *button = new QPushButton(language.Text(answer.text), this);
    button->setObjectName(QString::fromLatin1(answer.name));
    connect(button, &QPushButton::clicked, this, [this, decision = answer.decision] { Q_EMIT Answered(decision); });
    row->addWidget(button);
    m_buttons.append(button);
    if (answer.decision == TPermissionDecision::AllowedForNow) m_forNow = button;
    guarded.append(button);
  }
  m_buttons.first()->setDefault(true);
  layout->addLayout(row, 1, 0, 1, 2);
  layout->setColumnStretch(0, 1);
  m_guard = new TClickGuard(this, guarded);
  connect(close, &TCloseButton::clicked, this, [this] { Q_EMIT Answered(TPermissionDecision::Ask); });
  hide();
}

QSize TPermissionBar::sizeHint() const {
  return {Width, heightForWidth(Width)};
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

void TPermissionBar::Ask(const QString &question, bool canLast) {
  m_forNow->setVisible(canLast);
  m_question->setText(question);
  setAccessibleName(question);
  m_guard->Sleep();
  if (parentWidget() != nullptr) ComeBeforePage();
  show();
  // The bar does not take the keyboard, so a screen reader has to be told that it is there.
  QAccessibleEvent event(this, QAccessible::Alert);
  QAccessible::updateAccessibility(&event);
}

bool TPermissionBar::event(QEvent *event) {
  return ClaimEscape(*event) || TFloatingPanel::event(event);
}

void TPermissionBar::keyPressEvent(QKeyEvent *event) {
  if (event->key() == Qt::Key_Escape) {
    Q_EMIT Answered(TPermissionDecision::Ask);
    return;
  }
  TFloatingPanel::keyPressEvent(event);
}
