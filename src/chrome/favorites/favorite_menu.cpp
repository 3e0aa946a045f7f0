#include "chrome/favorites/favorite_menu.h"

#include <QElapsedTimer>
#include <QKeyEvent>
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

void TFavoriteMenus::Serve(QMenu *menu) {
  menu->setToolTipsVisible(true);
  menu->setStyle(m_style);
  menu->installEventFilter(this);
}

QAction *TFavoriteMenus::AddLink(QMenu *menu, const TFavorite &favorite, const QIcon &icon) {
  QAction *item = menu->addAction(icon, MenuText(favorite.caption));
  item->setData(QVariant::fromValue(favorite));
  connect(item, &QAction::hovered, this, [this, item] { ShowHint(item); });
  connect(item, &QAction::triggered, this, [this, favorite] { Choose(favorite); });
  return item;
}

TFavorite TFavoriteMenus::FavoriteOf(const QAction *item) {
  return item != nullptr ? item->data().value<TFavorite>() : TFavorite();
}

void TFavoriteMenus::Choose(const TFavorite &favorite) {
  const bool inBackground = std::exchange(m_inBackground, false);
  m_launcher.Open(favorite, inBackground ? TOpenPlace::BackgroundTab : TOpenPlace::BySetting, m_newTab);
}

void TFavoriteMenus::ChangeQuietly(QAction *item, const std::function<void()> &change) {
  m_isQuiet = true;
  change();
  m_isQuiet = false;
  for (QObject *place : item->associatedObjects()) {
    if (auto *menu = qobject_cast<QMenu *>(place)) menu->update();
  }
}

// Reads the file, so only for the one that the mouse or the keyboard is on.
void TFavoriteMenus::ShowHint(QAction *item) {
  const QString hint = FavoritesFolder::Hint(FavoriteOf(item));
  ChangeQuietly(item, [item, hint] {
    item->setToolTip(PlainTip(hint).replace(QLatin1String("\r\n"), QLatin1String("<br>")));
    item->setStatusTip(OneLine(Shortened(hint.section(QLatin1String("\r\n"), 1), 250)));
  });
}

bool TFavoriteMenus::TakeClick(QMenu *menu, const QMouseEvent &click) {
  m_inBackground = click.button() == Qt::MiddleButton || click.modifiers().testFlag(Qt::ControlModifier);
  if (click.button() != Qt::RightButton) return false;
  const TFavorite favorite = FavoriteOf(menu->actionAt(click.position().toPoint()));
  if (favorite.path.isEmpty()) return false;
  if (click.type() == QEvent::MouseButtonRelease) Q_EMIT MenuWanted(favorite, click.globalPosition().toPoint());
  return true;
}

bool TFavoriteMenus::TakeKey(QMenu *menu, const QKeyEvent &key) {
  m_inBackground = key.modifiers().testFlag(Qt::ControlModifier);
  const bool isWanted =
      key.key() == Qt::Key_Menu || (key.key() == Qt::Key_F10 && key.modifiers().testFlag(Qt::ShiftModifier));
  if (!isWanted) return false;
  QAction *item = menu->activeAction();
  const QPoint place = item != nullptr ? menu->actionGeometry(item).center() : QPoint();
  // In a sub-menu that has just opened the keyboard is still on its folder.
  const TFavorite favorite = FavoriteOf(item != nullptr ? item : menu->menuAction());
  if (favorite.path.isEmpty()) return false;
  Q_EMIT MenuWanted(favorite, menu->mapToGlobal(place));
  return true;
}

bool TFavoriteMenus::eventFilter(QObject *watched, QEvent *event) {
  auto *menu = qobject_cast<QMenu *>(watched);
  if (menu == nullptr) return QObject::eventFilter(watched, event);
  switch (event->type()) {
    case QEvent::ActionChanged:
      if (m_isQuiet && menu->isVisible()) return true;
      break;
    case QEvent::KeyPress:
      if (TakeKey(menu, static_cast<QKeyEvent &>(*event))) return true;
      break;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
      if (TakeClick(menu, static_cast<QMouseEvent &>(*event))) return true;
      break;
    default:
      break;
  }
  return QObject::eventFilter(watched, event);
}

TFavoriteMenu::TFavoriteMenu(QMenu *menu, TFolder folder, TKind kind, TFavoriteMenus &menus)
    : QObject(menu), m_menu(menu), m_folder(std::move(folder)), m_kind(kind), m_menus(menus) {
  menus.Serve(menu);
  if (kind == TKind::Folder) m_placeHolder = menu->addAction(PlaceHolder);
  connect(menu, &QMenu::aboutToShow, this, [this] {
    Load();
    m_isOpen = true;
    BeginIcons();
  });
  connect(menu, &QMenu::aboutToHide, this, [this] {
    m_isOpen = false;
    m_iconTimer.stop();
  });
  connect(&menus.m_icons, &TFavoriteIcons::Came, this, [this] {
    if (m_isOpen) BeginIcons();
  });
  connect(&m_iconTimer, &QTimer::timeout, this, &TFavoriteMenu::ShowIcons);
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
  m_iconsShown = 0;
}

void TFavoriteMenu::Fill() {
  if (m_kind == TKind::Folder && m_menus.m_settings.Get(Setting::ShowOpenAllFavorites)) {
    m_items.append(m_menu->addAction(m_menus.m_language.Global("OpenAllFavorites")));
    connect(m_items.last(), &QAction::triggered, this, [this] { m_menus.m_launcher.OpenAll(m_shown); });
    m_items.append(m_menu->addSeparator());
  }
  const TFavorites favorites = FavoritesFolder::List(m_shown);
  for (const TFavorite &favorite : favorites) {
    if (favorite.isFolder) {
      AddFolder(favorite);
    } else {
      m_items.append(m_menus.AddLink(m_menu, favorite, m_menus.m_icons.Page()));
    }
  }
  if (m_kind != TKind::Folder) return;
  if (!m_items.isEmpty()) {
    delete std::exchange(m_placeHolder, nullptr);
  } else {
    if (m_placeHolder == nullptr) m_placeHolder = m_menu->addAction(PlaceHolder);
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
  m_items.last()->setData(QVariant::fromValue(favorite));
}

void TFavoriteMenu::BeginIcons() {
  const int version = m_menus.m_icons.Version();
  if (std::exchange(m_iconVersion, version) != version) m_iconsShown = 0;
  if (m_iconsShown < m_items.size()) m_iconTimer.start();
}

// A little at a time while the menu is open: with thousands of favorites it is there at once.
void TFavoriteMenu::ShowIcons() {
  QElapsedTimer time;
  time.start();
  for (; m_iconsShown < m_items.size() && !time.hasExpired(IconSlice); ++m_iconsShown) {
    QAction *item = m_items.at(m_iconsShown);
    const TFavorite favorite = TFavoriteMenus::FavoriteOf(item);
    if (favorite.path.isEmpty() || favorite.isFolder || !m_menus.m_icons.HasOwn()) continue;
    const QIcon icon = m_menus.m_icons.Of(favorite);
    if (icon.cacheKey() == item->icon().cacheKey()) continue;
    m_menus.ChangeQuietly(item, [item, icon] { item->setIcon(icon); });
  }
  if (m_iconsShown == m_items.size()) m_iconTimer.stop();
}
