#pragma once

#include <QString>

class QAbstractItemModel;
class QLineEdit;
class QToolButton;
class QTreeView;
class QWidget;

// What the pages of the side bar are made of, alike on all of them. `name` is the component's, `text` is read out.
namespace PageParts {

// A flat one with a text.
[[nodiscard]] QToolButton *MakeButton(const QString &text, const char *name, QWidget *parent);
// A flat one with a command's picture (see CommandIcon) and a hint.
[[nodiscard]] QToolButton *MakeIconButton(const QString &text, const char *icon, const char *name, QWidget *parent);
// For something to look for; says what as long as it is empty.
[[nodiscard]] QLineEdit *MakeField(const QString &text, const char *name, QWidget *parent);
// A tree or list that is only looked at, with menus of its owner's (customContextMenuRequested).
[[nodiscard]] QTreeView *MakeList(const QString &text, const char *name, QAbstractItemModel &model, QWidget *parent);

}  // namespace PageParts
