#include "search/page_icon.h"

#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QMouseEvent>
#include <QToolButton>

TPageIcon::TPageIcon(QLineEdit *edit)
    : QObject(edit), m_edit(edit), m_action(edit->addAction(QIcon(), QLineEdit::LeadingPosition)) {
  m_action->setObjectName(QStringLiteral("actConnection"));
  connect(m_action, &QAction::triggered, this, &TPageIcon::Clicked);
  // The button that the edit field has made for it.
  for (QToolButton *button : edit->findChildren<QToolButton *>()) {
    if (button->defaultAction() != m_action) continue;
    button->setObjectName(QStringLiteral("imgIELink"));
    button->installEventFilter(this);
  }
}

void TPageIcon::Show(const QIcon &icon, const QString &hint) {
  m_action->setIcon(icon);
  m_action->setToolTip(hint);
  SetVisible(true);
}

void TPageIcon::Hide() {
  SetVisible(false);
}

void TPageIcon::SetVisible(bool isVisible) {
  if (m_action->isVisible() == isVisible) return;
  m_action->setVisible(isVisible);
  m_edit->update();  // the text moves, which the toolkit does not see to
}

bool TPageIcon::eventFilter(QObject *watched, QEvent *event) {
  if (event->type() == QEvent::MouseButtonPress) {
    const auto &press = static_cast<QMouseEvent &>(*event);
    m_isPressed = press.button() == Qt::LeftButton;
    m_pressed = press.position().toPoint();
  } else if (event->type() == QEvent::MouseMove) {
    const auto &move = static_cast<QMouseEvent &>(*event);
    const bool isHeld = move.buttons().testFlag(Qt::LeftButton);
    if (isHeld && !m_isPressed) return true;
    if (isHeld && (move.position().toPoint() - m_pressed).manhattanLength() >= QApplication::startDragDistance()) {
      // Of a drag the button sees no end.
      m_isPressed = false;
      static_cast<QToolButton *>(watched)->setDown(false);
      Q_EMIT DragWanted();
      return true;
    }
  }
  return QObject::eventFilter(watched, event);
}
