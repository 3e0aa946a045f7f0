#include "chrome/favorites/favorite_launcher.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QPointer>

#include "browser/engine/address.h"
#include "browser/tabs/browser_tab.h"
#include "browser/tabs/load_queue.h"
#include "browser/tabs/tab_strip.h"
#include "config/language.h"
#include "config/settings.h"
#include "favorites/favorites_folder.h"
#include "favorites/shortcut_file.h"
#include "platform/folder_entries.h"
#include "platform/native_path.h"
#include "ui/confirm_dialog.h"
#include "ui/message_box.h"

namespace {

bool IsFile(const QString &target) {
  if (!QDir::isAbsolutePath(target)) return false;
  if (NativePath::IsPlain(target)) return QFileInfo(target).isFile();
  return FolderEntries::Exists(target) && !FolderEntries::IsFolder(target);
}

}  // namespace

TFavoriteLauncher::TFavoriteLauncher(QWidget *window, TTabStrip &tabs, TLoadQueue &queue)
    : m_window(window), m_tabs(tabs), m_queue(queue) {}

void TFavoriteLauncher::Open(const TFavorite &favorite, TOpenPlace place, const TFlagSetting &newTab) {
  if (!favorite.isFolder) OpenTarget(FavoritesFolder::Target(favorite), place, newTab);
}

void TFavoriteLauncher::OpenFile(const QString &path) {
  if (QDesktopServices::openUrl(NativePath::ToUrl(path))) return;
  const TLanguage &language = m_tabs.Environment().language;
  const QString name = NativePath::Shown(path.mid(path.lastIndexOf(u'/') + 1));
  ShowWarning(m_window, language, language.Text("FAVORITES", "CannotOpen").arg(name));
}

void TFavoriteLauncher::OpenTarget(const QString &target, TOpenPlace place, const TFlagSetting &newTab) {
  if (IsFile(target)) {
    OpenFile(target);
    return;
  }
  TBrowserTab *tab = m_tabs.GetActivePage();
  if (tab == nullptr || !ShortcutFile::IsScript(target)) {
    if (place == TOpenPlace::BackgroundTab) {
      tab = m_tabs.NewBackgroundTab();
    } else if (place == TOpenPlace::NewTab || tab == nullptr || m_tabs.Environment().settings.Get(newTab)) {
      tab = m_tabs.NewTab();
    }
  }
  tab->Navigate(target);
}

qsizetype TFavoriteLauncher::AskHowMany(qsizetype pages) {
  if (pages <= MostUnasked) return pages;
  const TLanguage &language = m_tabs.Environment().language;
  const qsizetype most = qMin(pages, MostPages);
  const QString prompt = pages > most ? language.Text("FAVORITES", "OpenManyFirst").arg(most).arg(pages)
                                      : language.Text("FAVORITES", "OpenManyPrompt").arg(pages);
  const TAnswer answer =
      ShowConfirm(m_window, {.caption = TLanguage::ShortHint(language.Text("FAVORITES_POPUP", "ShowFavoritesHint")),
                             .firstLine = prompt,
                             .secondText = language.Text("CONFIRM", "Proceed"),
                             .ok = language.Global("Yes"),
                             .cancel = language.Global("No")});
  return answer.accepted ? most : 0;
}

void TFavoriteLauncher::OpenAll(const QString &folder) {
  const QPointer<TFavoriteLauncher> self(this);
  const QStringList all = FavoritesFolder::Targets(folder);
  const QStringList targets = all.mid(0, AskHowMany(all.size()));
  if (!self || targets.isEmpty()) return;
  QStringList files;
  {
    const TPresentationPause pause(m_tabs.Pages());
    const bool inForeground = m_tabs.Environment().settings.Get(Setting::OpenNewInForeground);
    for (const QString &target : targets) {
      if (IsFile(target)) {
        files.append(target);
        continue;
      }
      TBrowserTab *tab = inForeground ? m_tabs.NewTab(TTabPlace::AtEnd) : m_tabs.NewBackgroundTab(TTabPlace::AtEnd);
      m_queue.Navigate(tab, target);
    }
  }
  for (const QString &file : files) {
    if (self) OpenFile(file);
  }
}

void TFavoriteLauncher::OpenInNewTabs(const QStringList &addresses) {
  const QPointer<TFavoriteLauncher> self(this);
  const qsizetype most = AskHowMany(addresses.size());
  if (!self) return;
  const TPresentationPause pause(m_tabs.Pages());
  for (const QString &address : addresses.mid(0, most)) m_queue.Navigate(m_tabs.NewTab(), address);
}
