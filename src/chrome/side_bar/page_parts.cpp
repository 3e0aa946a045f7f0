#include "chrome/side_bar/page_parts.h"

#include <QLineEdit>
#include <QToolButton>
#include <QTreeView>

#include "actions/actions.h"

namespace PageParts {

QToolButton *MakeButton(const QString &text, const char *name, QWidget *parent) {
  auto *button = new QToolButton(parent);
  button->setObjectName(QLatin1String(name));
  button->setText(text);
  button->setAutoRaise(true);
  return button;
}

QToolButton *MakeIconButton(const QString &text, const char *icon, const char *name, QWidget *parent) {
  QToolButton *button = MakeButton(QString(), name, parent);
  button->setIcon(CommandIcon(icon));
  button->setToolTip(text);
  button->setAccessibleName(text);
  return button;
}

QLineEdit *MakeField(const QString &text, const char *name, QWidget *parent) {
  auto *field = new QLineEdit(parent);
  field->setObjectName(QLatin1String(name));
  field->setPlaceholderText(text);
  field->setAccessibleName(text);
  field->setClearButtonEnabled(true);
  return field;
}

QTreeView *MakeList(const QString &text, const char *name, QAbstractItemModel &model, QWidget *parent) {
  auto *list = new QTreeView(parent);
  list->setObjectName(QLatin1String(name));
  list->setAccessibleName(text);
  list->setModel(&model);
  list->setUniformRowHeights(true);
  list->setExpandsOnDoubleClick(false);
  list->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
  list->setContextMenuPolicy(Qt::CustomContextMenu);
  list->setEditTriggers(QAbstractItemView::NoEditTriggers);
  return list;
}

}  // namespace PageParts
