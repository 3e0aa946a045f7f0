#pragma once

#include <QMenu>
#include <QObject>
#include <QString>

class TLanguage;

// Makes menus of the page groups in a folder.
class THalvexGroupMenus final : public QObject {
  Q_OBJECT

 public:
  explicit THalvexGroupMenus(const TLanguage &language, QObject *parent) : QObject(parent), m_language(language) {}

  // Appends the sub-folders of `folder`, as sub-menus, and its page groups, as items. They hold their path as data, and
  // are in alphabetical order, folders first; folders whose name begins with "." and group files whose extension is not
  // exactly ".hgp" are left out.
  void BuildHalvexGroupMenu(QMenu *menu, const QString &folder);
  // In a menu of groups a right click or the menu key on an item asks for its own menu.
  void Serve(QMenu *menu) { menu->installEventFilter(this); }
  [[nodiscard]] const TLanguage &Language() const { return m_language; }

 Q_SIGNALS:
  // A group was chosen in one of the menus.
  void GroupChosen(const QString &path);
  // The menu of this group or folder is wanted there.
  void MenuWanted(const QString &path, const QPoint &globalPosition);

 protected:
  bool eventFilter(QObject *watched, QEvent *event) override;

 private:
  const TLanguage &m_language;
};

// A sub-folder in the groups menu; filled anew each time it opens.
class THalvexGroupMenuItem final : public QMenu {
  Q_OBJECT

 public:
  THalvexGroupMenuItem(const QString &caption, const QString &folder, THalvexGroupMenus &menus, QWidget *parent);

 private:
  void LoadMe();

  THalvexGroupMenus &m_menus;
  QString m_folder;
};
