#include "chrome/strip_corner.h"

#include <QHBoxLayout>
#include <QStyle>
#include <QToolButton>

#include "actions/actions.h"
#include "browser/strip/page_control.h"

TStripCorner::TStripCorner(const TActions &actions, TZVPageControl &pages) : QWidget(&pages) {
  setObjectName(QStringLiteral("pnlStripCorner"));
  auto *row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(0);
  const int icon = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
  for (const TCommand command : {TCommand::NewBlank, TCommand::TabListButton}) {
    auto *button = new QToolButton(this);
    actions.Equip(button, command);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::NoFocus);  // both are in the menus, and have keys there
    button->setIconSize(QSize(icon, icon));
    button->setToolButtonStyle(Qt::ToolButtonIconOnly);
    // The rows of the strip say how high it is.
    button->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Ignored);
    row->addWidget(button);
  }
  pages.SetCorner(this);
}
