#include "chrome/favorites/favorite_launcher.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QPointer>
#include <QUrl>

#include "browser/engine/address.h"
#include "browser/tabs/browser_tab.h"
#include "browser/tabs/load_queue.h"
#include "browser/tabs/tab_strip.h"
#include "config/language.h"
#include "config/settings.h"
#include "favorites/favorites_folder.h"
#include "favorites/shortcut_file.h"
#include "ui/confirm_dialog.h"
#include "ui/message_box.h"

TFavoriteLauncher::TFavoriteLauncher(QWidget *window, TTabStrip &tabs, TLoadQueue &queue)
    : m_window(window), m_tabs(tabs), m_queue(queue) {}

void TFavoriteLauncher::Open(const TFavorite &favorite, TFavoritePlace place, const TFlagSetting &newTab) {
  if (!favorite.isFolder) OpenTarget(FavoritesFolder::Target(favorite), place, newTab);
}

void TFavoriteLauncher::OpenTarget(const QString &target, TFavoritePlace place, const TFlagSetting &newTab) {
  if (QDir::isAbsolutePath(target) && QFileInfo(target).isFile()) {
    if (QDesktopServices::openUrl(QUrl::fromLocalFile(target))) return;
    const TLanguage &language = m_tabs.Environment().language;
    ShowWarning(m_window, language, language.Text("FAVORITES", "CannotOpen").arg(QFileInfo(target).fileName()));
    return;
  }
  TBrowserTab *tab = m_tabs.GetActivePage();
  if (tab == nullptr || !ShortcutFile::IsScript(target)) {
    if (place == TFavoritePlace::BackgroundTab) {
      tab = m_tabs.NewBackgroundTab();
    } else if (place == TFavoritePlace::NewTab || tab == nullptr || m_tabs.Environment().settings.Get(newTab)) {
      tab = m_tabs.NewTab();
    }
  }
  tab->Navigate(target);
}

void TFavoriteLauncher::OpenAll(const QString &folder) {
  const QStringList addresses = FavoritesFolder::Addresses(folder).mid(0, MostPages);
  if (addresses.size() > MostUnasked) {
    const TLanguage &language = m_tabs.Environment().language;
    const QPointer<TFavoriteLauncher> self(this);
    const TAnswer answer =
        ShowConfirm(m_window, {.caption = TLanguage::ShortHint(language.Text("FAVORITES_POPUP", "ShowFavoritesHint")),
                               .firstLine = language.Text("FAVORITES", "OpenManyPrompt").arg(addresses.size()),
                               .secondText = language.Text("CONFIRM", "Proceed"),
                               .ok = language.Global("Yes"),
                               .cancel = language.Global("No")});
    if (!self || !answer.accepted) return;
  }
  const TPresentationPause pause(m_tabs.Pages());
  const bool inForeground = m_tabs.Environment().settings.Get(Setting::OpenNewInForeground);
  for (const QString &address : addresses) {
    TBrowserTab *tab = inForeground ? m_tabs.NewTab(TTabPlace::AtEnd) : m_tabs.NewBackgroundTab(TTabPlace::AtEnd);
    m_queue.Navigate(tab, address);
  }
}
