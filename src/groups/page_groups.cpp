#include "groups/page_groups.h"

#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QMenu>
#include <QPointer>
#include <QRegularExpression>
#include <QUrl>
#include <utility>

#include "actions/actions.h"
#include "browser/tabs/browser_tab.h"
#include "browser/tabs/close_all_tabs.h"
#include "browser/tabs/load_queue.h"
#include "browser/tabs/tab_menu.h"
#include "browser/tabs/tab_strip.h"
#include "config/language.h"
#include "config/settings.h"
#include "groups/group_pages.h"
#include "groups/halvex_group.h"
#include "groups/halvex_group_dialog.h"
#include "groups/halvex_group_menu_item.h"
#include "ui/confirm_dialog.h"
#include "ui/message_box.h"
#include "ui/shown_text.h"

namespace {

// File managers hand over URLs.
QString LocalPath(const QString &argument) {
  if (!argument.startsWith(QLatin1String("file:"), Qt::CaseInsensitive)) return argument;
  const QString path = QUrl(argument).toLocalFile();
  return path.isEmpty() ? argument : path;
}

bool IsOtherUrl(const QString &path) {
  static const QRegularExpression scheme(QStringLiteral("^[A-Za-z][A-Za-z0-9+.-]*://"));
  return scheme.match(path).hasMatch();
}

// As the trees show it.
QString ShortName(const QString &file) {
  constexpr qsizetype Longest = 60;  // characters
  const QString name = IsHalvexGroupFile(file) ? file.chopped(qstrlen(THalvexGroup::Extension)) : file;
  return OneLine(Shortened(name, Longest));
}

void AddTo(THalvexGroup &group, const TBrowserTab &tab) {
  // A page of a group that is still on its way is saved as it stood there.
  group.AddEntry(tab.StickyName(), tab.AddressToSave(), tab.Locked() || tab.LockPending());
}

}  // namespace

TPageGroups::TPageGroups(QWidget *window, TActions &actions, TTabStrip &tabs, TTabMenu &tabMenu,
                         TCloseAllTabs &closeAll, TLoadQueue &queue)
    : m_window(window),
      m_actions(actions),
      m_tabs(tabs),
      m_closeAll(closeAll),
      m_queue(queue),
      m_language(tabs.Environment().language),
      m_folder(new TGroupFolder(window, m_language, this)),
      m_menus(new THalvexGroupMenus(m_language, this)) {
  ConnectCommands(tabMenu);
  FollowFolder();
}

void TPageGroups::ConnectCommands(TTabMenu &tabMenu) {
  connect(m_actions[TCommand::AddToGroup], &QAction::triggered, this,
          [this] { AddTabToHalvexGroup(m_tabs.GetActivePage()); });
  connect(m_actions[TCommand::SaveAsGroup], &QAction::triggered, this, &TPageGroups::actSaveAsHalvexGroupExecute);
  connect(m_actions[TCommand::OrganizeGroups], &QAction::triggered, this, &TPageGroups::actOrganizeHalvexGroupsExecute);
  tabMenu.On(TCommand::TabAddToGroup, this, [this](TBrowserTab *tab) { AddTabToHalvexGroup(tab); });
}

void TPageGroups::FollowFolder() {
  connect(m_folder, &TGroupFolder::Changed, this, [this] { m_groupsMenuStale = true; });
  connect(m_folder, &TGroupFolder::Trashed, this, [this](const QString &name, const std::function<void()> &undo) {
    Q_EMIT Done(m_language.Text("HalvexGroups", "TrashedNote").arg(ShortName(name)), undo);
  });
  connect(m_menus, &THalvexGroupMenus::GroupChosen, this, &TPageGroups::HalvexGroupClick);
  connect(m_menus, &THalvexGroupMenus::MenuWanted, this, &TPageGroups::ShowItemMenu);
  QMenu *menu = m_actions.Menu(TMenu::Groups);
  m_menus->Serve(menu);
  const int fixedItems = int(menu->actions().size());
  connect(menu, &QMenu::aboutToShow, this, [this, menu, fixedItems] {
    m_folder->Watch();
    if (std::exchange(m_groupsMenuStale, false)) RefillMenu(menu, fixedItems);
  });
}

bool TPageGroups::IsGroupFile(const QString &argument) {
  const QString path = LocalPath(argument);
  return IsHalvexGroupFile(path) && !IsOtherUrl(path);
}

bool TPageGroups::IsHandedOverGroup(const QString &argument) {
  const QString path = LocalPath(argument);
  return path.endsWith(QLatin1String(THalvexGroup::Extension)) && QFileInfo(path).isFile();
}

void TPageGroups::HalvexGroupClick(const QString &argument) {
  OpenHalvexGroup(argument, m_tabs.Environment().settings.Get(Setting::HGCloseFirst));
}

void TPageGroups::OpenHalvexGroup(const QString &argument, bool closeFirst, bool atStartup) {
  const QString path = LocalPath(argument);
  const THalvexGroup group(path);
  if (!group.ReadError().isEmpty()) {
    TellUnreadable(path, group.ReadError());
    return;
  }
  if (group.Count() == 0) return;
  if (group.Count() > MostPages) {
    Tell(m_language.Text("HalvexGroups", "TooManyPages")
             .arg(QFileInfo(path).fileName(), QString::number(group.Count()), QString::number(MostPages)));
    return;
  }
  const TLeaveQuestion::TTabs kept = closeFirst ? m_closeAll.CloseAll(true) : TLeaveQuestion::TTabs();
  const TPresentationPause pause(m_tabs.Pages());
  const bool inForeground = m_tabs.Environment().settings.Get(Setting::OpenNewInForeground);
  for (int i = 0; i < group.Count(); ++i) {
    // The tab that is left after closing is taken whatever it is, one that was spared too: meant so. Not one whose page
    // the user has just been asked about and kept.
    TBrowserTab *tab = closeFirst && i == 0 ? m_tabs.GetActivePage() : nullptr;
    if (tab == nullptr || kept.contains(tab)) {
      tab = inForeground ? m_tabs.NewTab(TTabPlace::AtEnd) : m_tabs.NewBackgroundTab(TTabPlace::AtEnd);
    }
    OpenEntry(tab, group.At(i), atStartup);
  }
}

void TPageGroups::OpenPage(TBrowserTab *tab, const QString &line) {
  OpenEntry(tab, {line.section(u'=', 0, 0), line.section(u'=', 1)}, false);
}

void TPageGroups::OpenEntry(TBrowserTab *tab, TNamedAddress page, bool atStartup) {
  if (atStartup) tab->SetRestored(true);
  // Only the lower-case spelling means no name; a page named "Blank7" keeps its name, which is meant.
  if (!page.name.isEmpty() && !page.name.startsWith(QLatin1String("blank"))) tab->SetStickyName(page.name);
  if (page.address.startsWith(QLatin1Char('*'))) {
    page.address.remove(0, 1);
    tab->SetLockPending(true);
  }
  m_queue.Navigate(tab, page.address);
}

void TPageGroups::actSaveAsHalvexGroupExecute() {
  m_tabs.CloseHiddenTabs();
  THalvexGroup group;
  for (const TBrowserTab *tab : m_tabs.Tabs()) {
    if (m_tabs.Pages().IsPageVisible(tab)) AddTo(group, *tab);
  }
  const QPointer<TPageGroups> self(this);
  const QString file = AskNewFile();
  if (!self) return;
  if (!file.isEmpty()) {
    group.SetFileName(file);
    Save(group, m_language.Text("HalvexGroups", "SavedNote"));
  }
  m_folder->Refresh();
}

void TPageGroups::AddTabToHalvexGroup(TBrowserTab *tab) {
  const QPointer<TBrowserTab> page(tab);
  const QPointer<TPageGroups> self(this);
  const QString file = AskExistingFile();
  if (!self) return;
  if (!file.isEmpty() && page && page->Browser() != nullptr) {
    THalvexGroup group(file);
    if (group.ReadError().isEmpty()) {
      group.SetFileName(file);
      AddTo(group, *page);
      Save(group, m_language.Text("HalvexGroups", "AddedNote"));
    } else {
      TellUnreadable(file, group.ReadError());
    }
  }
  m_folder->Refresh();
}

void TPageGroups::actOrganizeHalvexGroupsExecute() {
  const QPointer<TPageGroups> self(this);
  const QString file = AskExistingFile();
  if (self && !file.isEmpty()) Organize(file);
}

void TPageGroups::Organize(const QString &path) {
  if (!QFileInfo(path).isFile()) return;
  const QPointer<TPageGroups> self(this);
  const QPointer<TfrmHalvexGroup> dialog(new TfrmHalvexGroup(m_language, path, m_window));
  if (dialog->ReadError().isEmpty()) {
    dialog->setFont(m_window->font());
    dialog->exec();
  } else {
    TellUnreadable(path, dialog->ReadError());
  }
  delete dialog;
  if (self) m_folder->Refresh();
}

QString TPageGroups::AskExistingFile() {
  auto *dialog = new QFileDialog(m_window);
  dialog->setAcceptMode(QFileDialog::AcceptOpen);
  dialog->setFileMode(QFileDialog::ExistingFile);
  dialog->setDefaultSuffix(QString::fromLatin1(THalvexGroup::Extension + 1));
  return Ask(dialog);
}

QString TPageGroups::AskNewFile() {
  const QPointer<TPageGroups> self(this);
  const TBrowse browse = [self](QWidget *over) { return self ? self->BrowseNewFile(over) : QString(); };
  QString file = m_askNewFile ? m_askNewFile(m_window, browse) : browse(m_window);
  if (!self || file.isEmpty()) return {};
  if (!IsHalvexGroupFile(file)) file += QLatin1String(THalvexGroup::Extension);
  if (!QFileInfo::exists(file)) return file;
  const TAnswer answer = ShowConfirm(m_window, {.caption = QApplication::applicationDisplayName(),
                                                .firstLine = m_language.Global("HalvexGroupDuplicate"),
                                                .secondText = QFileInfo(file).fileName(),
                                                .ok = m_language.Global("Yes"),
                                                .cancel = m_language.Global("No"),
                                                .isRisky = true});
  return answer.accepted ? file : QString();
}

QString TPageGroups::BrowseNewFile(QWidget *over) {
  auto *dialog = new QFileDialog(over);
  dialog->setAcceptMode(QFileDialog::AcceptSave);
  dialog->setFileMode(QFileDialog::AnyFile);
  // The question about an existing file comes later, with the name that the file really gets.
  dialog->setOption(QFileDialog::DontConfirmOverwrite);
  return Ask(dialog);
}

QString TPageGroups::Ask(QFileDialog *dialog) {
  dialog->setWindowTitle(m_language.Global("HalvexGroup"));
  dialog->setNameFilter(m_language.Text("MAIN", "HalvexGroupFilter"));
  dialog->setDirectory(TGroupFolder::Path());
  const QPointer<QFileDialog> open(dialog);
  const bool accepted = dialog->exec() == QDialog::Accepted;
  if (!open) return {};  // The window has gone and has taken the dialog along.
  const QString file = accepted ? dialog->selectedFiles().value(0) : QString();
  delete dialog;
  return file;
}

void TPageGroups::Save(const THalvexGroup &group, const QString &note) {
  const TGroupChange change = GroupPages::Write(group);
  QString name = QFileInfo(group.FileName()).fileName();
  if (!change.error.isEmpty()) {
    Tell(m_language.Text("HalvexGroups", "CannotWrite").arg(name, change.error));
    return;
  }
  const QPointer<TPageGroups> self(this);
  Q_EMIT Done(note.arg(ShortName(name)), [self, change, name] {
    if (self) self->TakeBack(change, name);
  });
}

void TPageGroups::TakeBack(const TGroupChange &change, const QString &name) {
  const QString error = GroupPages::Undo(change);
  const QPointer<TPageGroups> self(this);
  if (!error.isEmpty()) Tell(m_language.Text("HalvexGroups", "CannotWrite").arg(name, error));
  if (self) m_folder->Refresh();
}

void TPageGroups::TellUnreadable(const QString &path, const QString &reason) {
  Tell(m_language.Text("HalvexGroups", "CannotRead").arg(QFileInfo(path).fileName(), reason));
}

void TPageGroups::Tell(const QString &text) {
  ShowWarning(m_window, m_language, text, m_language.Global("HalvexGroup"));
}

void TPageGroups::Serve(QMenu *menu) {
  m_menus->Serve(menu);
}

void TPageGroups::ShowItemMenu(const QString &path, const QPoint &globalPosition) {
  auto *menu = new QMenu(m_window);
  menu->setObjectName(QStringLiteral("pmGroupItem"));
  menu->setAttribute(Qt::WA_DeleteOnClose);
  const auto add = [&](const QString &text, auto command) {
    QAction *item = menu->addAction(text);
    // Once the menu that the item stands in has gone, which has no business beside a dialog.
    connect(
        item, &QAction::triggered, this,
        [command] {
          while (QWidget *open = QApplication::activePopupWidget()) {
            if (!open->close()) break;
          }
          command();
        },
        Qt::QueuedConnection);
    return item;
  };
  const bool isFolder = QFileInfo(path).isDir();
  if (!isFolder) {
    menu->setDefaultAction(add(m_language.Text("FOLDER_VIEW", "Open"), [=, this] { HalvexGroupClick(path); }));
    add(m_language.Text("HalvexGroups", "Organize"), [=, this] { Organize(path); });
  }
  add(m_language.Text("FOLDER_VIEW", "Rename"),
      [=, this] { isFolder ? m_folder->RenameFolder(path) : m_folder->Rename(path); });
  add(m_language.Text("FOLDER_VIEW", "Delete"), [=, this] { m_folder->Delete(path); });
  menu->popup(globalPosition);
}

void TPageGroups::RefillMenu(QMenu *menu, int fixedItems) {
  const QList<QAction *> items = menu->actions();
  for (QAction *item : items.sliced(fixedItems)) {
    if (item->menu() != nullptr) {
      delete item->menu();  // and the item with it
    } else {
      delete item;
    }
  }
  m_menus->BuildHalvexGroupMenu(menu, TGroupFolder::Path());
}
