#include "groups/halvex_group_menu_item.h"

#include <algorithm>
#include <QDir>
#include <QKeyEvent>
#include <QMouseEvent>
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
    menu->addMenu(child)->setData(place + item.name);
    Serve(child);
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

bool THalvexGroupMenus::eventFilter(QObject *watched, QEvent *event) {
  auto *menu = qobject_cast<QMenu *>(watched);
  const QEvent::Type type = event->type();
  if (menu == nullptr) return QObject::eventFilter(watched, event);
  if (type == QEvent::MouseButtonPress || type == QEvent::MouseButtonRelease) {
    const auto &click = static_cast<QMouseEvent &>(*event);
    const QAction *item = menu->actionAt(click.position().toPoint());
    const QString path = item != nullptr ? item->data().toString() : QString();
    if (click.button() != Qt::RightButton || path.isEmpty()) return false;
    if (type == QEvent::MouseButtonRelease) Q_EMIT MenuWanted(path, click.globalPosition().toPoint());
    return true;
  }
  if (type == QEvent::KeyPress) {
    const auto &key = static_cast<QKeyEvent &>(*event);
    const bool isWanted =
        key.key() == Qt::Key_Menu || (key.key() == Qt::Key_F10 && key.modifiers().testFlag(Qt::ShiftModifier));
    QAction *item = menu->activeAction();
    const QString path = item != nullptr ? item->data().toString() : QString();
    if (!isWanted || path.isEmpty()) return false;
    Q_EMIT MenuWanted(path, menu->mapToGlobal(menu->actionGeometry(item).center()));
    return true;
  }
  return QObject::eventFilter(watched, event);
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
