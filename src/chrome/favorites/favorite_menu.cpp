#include "chrome/favorites/favorite_menu.h"

#include <QElapsedTimer>
#include <QMenu>
#include <QMouseEvent>
#include <utility>

#include "chrome/favorites/favorite_icons.h"
#include "chrome/favorites/favorite_menu_style.h"
#include "config/language.h"
#include "config/settings.h"
#include "ui/shown_text.h"

namespace {

constexpr int IconSlice = 4;  // milliseconds of one turn of the event loop that reading icons may take
// What makes a sub-menu of a folder that nobody has looked into. It is never seen: the menu is filled before it shows.
const QString PlaceHolder = QStringLiteral("Place holder");

}  // namespace

TFavoriteMenus::TFavoriteMenus(TFavoriteLauncher &launcher, const TFavoriteIcons &icons, const TLanguage &language,
                               TSettings &settings, const TFlagSetting &newTab)
    : m_launcher(launcher),
      m_icons(icons),
      m_language(language),
      m_settings(settings),
      m_newTab(newTab),
      m_style(new TFavoriteMenuStyle) {
  m_style->setParent(this);
  for (const TFlagSetting *setting :
       {&Setting::ShowOpenAllFavorites, &Setting::BreakFavorites, &Setting::UseCustomIcons}) {
    settings.Follow(*setting, this, [this] { MarkStale(); });
  }
  settings.Apply(Setting::BreakFavorites, this,
                 [this] { m_style->SetBreaks(m_settings.Get(Setting::BreakFavorites)); });
}

TFavoriteMenus::~TFavoriteMenus() = default;

TFavoriteMenu::TFavoriteMenu(QMenu *menu, TFolder folder, TKind kind, TFavoriteMenus &menus)
    : QObject(menu), m_menu(menu), m_folder(std::move(folder)), m_kind(kind), m_menus(menus) {
  menu->setToolTipsVisible(true);
  menu->setStyle(menus.m_style);
  menu->installEventFilter(this);
  if (kind == TKind::Folder) m_placeHolder = menu->addAction(PlaceHolder);
  connect(menu, &QMenu::aboutToShow, this, [this] {
    Load();
    if (std::exchange(m_iconVersion, m_menus.m_icons.Version()) != m_iconVersion) m_iconsShown = 0;
    if (m_iconsShown < m_items.size()) m_iconTimer.start();
  });
  connect(menu, &QMenu::aboutToHide, &m_iconTimer, &QTimer::stop);
  connect(&m_iconTimer, &QTimer::timeout, this, &TFavoriteMenu::ShowIcons);
}

const TFavorite *TFavoriteMenu::FavoriteOf(const QAction *item) const {
  const auto found = m_favorites.constFind(item);
  return found == m_favorites.constEnd() ? nullptr : &*found;
}

void TFavoriteMenu::Load() {
  const QString folder = m_folder();
  const quint64 stamp = FavoritesFolder::Stamp(folder);
  if (m_generation == m_menus.m_generation && stamp == m_stamp && folder == m_shown) return;
  m_generation = m_menus.m_generation;
  m_stamp = stamp;
  m_shown = folder;
  Clear();
  Fill();
  Q_EMIT Filled();
}

void TFavoriteMenu::Clear() {
  for (QAction *item : std::exchange(m_items, {})) {
    if (item->menu() != nullptr) {
      delete item->menu();  // and the item with it
    } else {
      delete item;
    }
  }
  m_favorites.clear();
  m_iconsShown = 0;
}

void TFavoriteMenu::Fill() {
  if (m_kind == TKind::Folder && m_menus.m_settings.Get(Setting::ShowOpenAllFavorites)) {
    m_items.append(m_menu->addAction(m_menus.m_language.Global("OpenAllFavorites")));
    connect(m_items.last(), &QAction::triggered, this, [this] { m_menus.m_launcher.OpenAll(m_shown); });
    m_items.append(m_menu->addSeparator());
  }
  const TFavorites favorites = FavoritesFolder::List(m_shown);
  m_favorites.reserve(favorites.size());
  for (const TFavorite &favorite : favorites) favorite.isFolder ? AddFolder(favorite) : AddLink(favorite);
  if (m_placeHolder == nullptr) return;
  if (!m_items.isEmpty()) {
    delete std::exchange(m_placeHolder, nullptr);
  } else {
    m_placeHolder->setText(m_menus.m_language.Global("EmptyFolder"));
    m_placeHolder->setEnabled(false);
  }
}

void TFavoriteMenu::AddFolder(const TFavorite &favorite) {
  auto *child = new QMenu(MenuText(favorite.caption), m_menu);
  child->setIcon(m_menus.m_icons.Folder());
  new TFavoriteMenu(
      child, [path = favorite.path] { return path; }, TKind::Folder, m_menus);
  m_items.append(m_menu->addMenu(child));
  m_favorites.insert(m_items.last(), favorite);
}

void TFavoriteMenu::AddLink(const TFavorite &favorite) {
  QAction *item = m_menu->addAction(m_menus.m_icons.Page(), MenuText(favorite.caption));
  m_items.append(item);
  m_favorites.insert(item, favorite);
  connect(item, &QAction::hovered, this, [this, item] { ShowHint(item); });
  connect(item, &QAction::triggered, this, [this, favorite] {
    const bool inBackground = std::exchange(m_inBackground, false);
    m_menus.m_launcher.Open(favorite, inBackground ? TFavoritePlace::BackgroundTab : TFavoritePlace::BySetting,
                            m_menus.m_newTab);
  });
}

// Reads the file, so only for the one that the mouse or the keyboard is on.
void TFavoriteMenu::ShowHint(QAction *item) const {
  const TFavorite *favorite = FavoriteOf(item);
  if (favorite == nullptr) return;
  const QString hint = FavoritesFolder::Hint(*favorite);
  item->setToolTip(PlainTip(hint).replace(QLatin1String("\r\n"), QLatin1String("<br>")));
  item->setStatusTip(OneLine(Shortened(hint.section(QLatin1String("\r\n"), 1), 250)));
}

// A little at a time while the menu is open: with thousands of favorites it is there at once.
void TFavoriteMenu::ShowIcons() {
  QElapsedTimer time;
  time.start();
  for (; m_iconsShown < m_items.size() && !time.hasExpired(IconSlice); ++m_iconsShown) {
    QAction *item = m_items.at(m_iconsShown);
    const TFavorite *favorite = FavoriteOf(item);
    if (favorite != nullptr && !favorite->isFolder && m_menus.m_icons.HasOwn()) {
      const QIcon icon = m_menus.m_icons.Of(*favorite);
      if (icon.cacheKey() != item->icon().cacheKey()) item->setIcon(icon);
    }
  }
  if (m_iconsShown == m_items.size()) m_iconTimer.stop();
}

bool TFavoriteMenu::eventFilter(QObject *watched, QEvent *event) {
  if (event->type() == QEvent::KeyPress) {
    m_inBackground = static_cast<QKeyEvent *>(event)->modifiers().testFlag(Qt::ControlModifier);
  } else if (event->type() == QEvent::MouseButtonRelease || event->type() == QEvent::MouseButtonPress) {
    auto &click = static_cast<QMouseEvent &>(*event);
    m_inBackground = click.button() == Qt::MiddleButton || click.modifiers().testFlag(Qt::ControlModifier);
    if (click.button() == Qt::RightButton) {
      const QAction *item = m_menu->actionAt(click.position().toPoint());
      const TFavorite *favorite = FavoriteOf(item);
      if (favorite != nullptr && event->type() == QEvent::MouseButtonRelease) {
        Q_EMIT m_menus.MenuWanted(TFavorite(*favorite), click.globalPosition().toPoint());
      }
      if (favorite != nullptr) return true;
    }
  }
  return QObject::eventFilter(watched, event);
}
