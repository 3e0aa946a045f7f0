#pragma once

#include <functional>
#include <QMenu>
#include <QString>

class TLanguage;

// What choosing a group in a menu does with the group's path.
using TGroupChosen = std::function<void(const QString &path)>;

// Appends the sub-folders of `folder`, as sub-menus, and its page groups, as items that hold their path as data. Both
// are in alphabetical order, folders first; folders whose name begins with "." and group files whose extension is not
// exactly ".hgp" are left out.
void BuildHalvexGroupMenu(QMenu *menu, const QString &folder, const TLanguage &language, const TGroupChosen &chosen);

// A sub-folder in the groups menu; filled anew each time it opens.
class THalvexGroupMenuItem final : public QMenu {
  Q_OBJECT

 public:
  THalvexGroupMenuItem(const QString &caption, const QString &folder, const TLanguage &language, TGroupChosen chosen,
                       QWidget *parent);

 private:
  void LoadMe();

  const TLanguage &m_language;
  QString m_folder;
  TGroupChosen m_chosen;
};
