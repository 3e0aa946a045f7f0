#include "chrome/status_offer.h"

#include <QAccessible>
#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>
#include <utility>

TStatusOffer::TStatusOffer(QWidget *parent)
    : QWidget(parent), m_text(new QLabel(this)), m_button(new QToolButton(this)) {
  m_text->setObjectName(QStringLiteral("pnlOffer"));
  m_text->setTextFormat(Qt::PlainText);
  m_button->setObjectName(QStringLiteral("tbOffer"));
  m_button->setFocusPolicy(Qt::TabFocus);
  auto *layout = new QHBoxLayout(this);
  layout->setContentsMargins(QMargins());
  layout->addWidget(m_text);
  layout->addWidget(m_button);
  m_time.setSingleShot(true);
  m_time.setInterval(ShownFor);
  connect(&m_time, &QTimer::timeout, this, [this] {
    if (underMouse() || m_button->hasFocus()) {
      m_time.start();
    } else {
      Close();
    }
  });
  connect(m_button, &QToolButton::clicked, this, &TStatusOffer::Take);
  hide();
}

void TStatusOffer::Show(const QString &text, const QString &actionText, std::function<void()> action) {
  m_action = std::move(action);
  m_text->setText(text);
  m_button->setText(actionText);
  m_button->setAccessibleDescription(text);
  if (QWidget *focused = QApplication::focusWidget(); focused != m_button) m_before = focused;
  show();
  m_time.start();
  QAccessibleEvent event(m_text, QAccessible::Alert);
  QAccessible::updateAccessibility(&event);
}

void TStatusOffer::Take() {
  const auto action = std::exchange(m_action, nullptr);
  Close();
  if (action) action();
}

void TStatusOffer::Close() {
  m_time.stop();
  m_action = nullptr;
  // Where the toolkit would go from here is nowhere in particular.
  if (m_button->hasFocus() && m_before && m_before->isVisible()) m_before->setFocus(Qt::OtherFocusReason);
  hide();
}
