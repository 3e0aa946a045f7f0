#include "chrome/bands/menu_extender.h"

#include <ranges>

#include "actions/actions.h"

namespace {

void MoveItems(QMenu *from, QMenu *to) {
  for (QAction *item : from->actions()) {
    from->removeAction(item);
    to->addAction(item);
  }
}

}  // namespace

TMenuExtender::TMenuExtender(TActions &actions, std::function<bool(const QAction *)> fits, QWidget *parent)
    : QMenu(parent), m_actions(actions), m_fits(std::move(fits)) {
  setObjectName(QStringLiteral("pmMenuExtender"));
  connect(this, &QMenu::aboutToShow, this, &TMenuExtender::Fill);
  // What was chosen is carried out first.
  connect(this, &QMenu::aboutToHide, this, &TMenuExtender::GiveBack, Qt::QueuedConnection);
}

void TMenuExtender::Fill() {
  GiveBack();
  for (const TMenuRow &row : MenuRows()) {
    if (row.menu == row.parent && row.menu != TMenu::Tabs) Borrow(row.menu);
  }
}

void TMenuExtender::Borrow(TMenu menu) {
  QMenu *owner = m_actions.Menu(menu);
  // Whoever fills the menu when it opens does so now.
  Q_EMIT owner->aboutToShow();
  QMenu *&borrower = m_borrowers[menu];
  if (borrower == nullptr) {
    borrower = new QMenu(this);
    borrower->setObjectName(owner->objectName() + QLatin1String("Extended"));
    borrower->setToolTipsVisible(owner->toolTipsVisible());
    Q_EMIT BorrowerMade(menu, borrower);
  }
  const QAction *button = owner->menuAction();
  QAction *entry = borrower->menuAction();
  entry->setText(button->text());
  entry->setToolTip(button->toolTip());
  entry->setStatusTip(button->statusTip());
  entry->setEnabled(button->isEnabled());
  addAction(entry);
  MoveItems(owner, borrower);
  entry->setVisible(!m_fits(button));
  m_entries.push_back(menu);
}

void TMenuExtender::GiveBack() {
  // From the last entry to the first.
  for (const TMenu menu : m_entries | std::views::reverse) {
    QMenu *borrower = m_borrowers[menu];
    MoveItems(borrower, m_actions.Menu(menu));
    removeAction(borrower->menuAction());
  }
  m_entries.clear();
}
