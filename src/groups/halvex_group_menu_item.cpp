#include "groups/halvex_group_menu_item.h"

#include <algorithm>
#include <QDir>
#include <QStyle>

#include "config/language.h"
#include "groups/halvex_group.h"
#include "ui/shown_text.h"

namespace {

struct TNamed {
  QString caption;
  QString name;
};

QList<TNamed> Sorted(const QStringList &names, qsizetype cutAtEnd) {
  QList<TNamed> items;
  items.reserve(names.size());
  for (const QString &name : names) items.append({MenuText(name.chopped(cutAtEnd)), name});
  std::stable_sort(items.begin(), items.end(), [](const TNamed &a, const TNamed &b) {
    return QString::localeAwareCompare(a.caption.toCaseFolded(), b.caption.toCaseFolded()) < 0;
  });
  return items;
}

}  // namespace

void THalvexGroupMenus::BuildHalvexGroupMenu(QMenu *menu, const QString &folder) {
  const QDir dir(folder);
  const QString place = dir.path() + QLatin1Char('/');
  const QString extension = QString::fromLatin1(THalvexGroup::Extension);
  const QIcon folderIcon = menu->style()->standardIcon(QStyle::SP_DirIcon, nullptr, menu);
  for (const TNamed &item : Sorted(dir.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::NoSort), 0)) {
    auto *child = new THalvexGroupMenuItem(item.caption, place + item.name + QLatin1Char('/'), *this, menu);
    child->setIcon(folderIcon);
    menu->addMenu(child);
  }
  QStringList groups = dir.entryList(QDir::Files | QDir::Hidden, QDir::NoSort);
  groups.removeIf([&extension](const QString &name) { return !name.endsWith(extension); });
  const QIcon groupIcon(QStringLiteral(":/icons/groups.svg"));
  for (const TNamed &item : Sorted(groups, extension.size())) {
    QAction *action = menu->addAction(groupIcon, item.caption);
    action->setData(place + item.name);
    connect(action, &QAction::triggered, this, [this, path = place + item.name] { Q_EMIT GroupChosen(path); });
  }
}

THalvexGroupMenuItem::THalvexGroupMenuItem(const QString &caption, const QString &folder, THalvexGroupMenus &menus,
                                           QWidget *parent)
    : QMenu(caption, parent), m_menus(menus), m_folder(folder) {
  connect(this, &QMenu::aboutToShow, this, &THalvexGroupMenuItem::LoadMe);
}

void THalvexGroupMenuItem::LoadMe() {
  qDeleteAll(findChildren<THalvexGroupMenuItem *>(QString(), Qt::FindDirectChildrenOnly));
  clear();
  m_menus.BuildHalvexGroupMenu(this, m_folder);
  if (isEmpty()) addAction(m_menus.Language().Global("EmptyFolder"))->setEnabled(false);
}
