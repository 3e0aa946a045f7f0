#include "chrome/favorites/links_bar.h"

#include <algorithm>
#include <QApplication>
#include <QContextMenuEvent>
#include <QDrag>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QMenu>
#include <QMimeData>
#include <QUrl>
#include <utility>

#include "chrome/favorites/favorite_commands.h"
#include "chrome/favorites/favorite_icons.h"
#include "chrome/favorites/page_shortcut.h"
#include "chrome/folder_view/dropped_favorites.h"
#include "config/language.h"
#include "config/settings.h"
#include "favorites/favorite_drag.h"
#include "favorites/favorites_edit.h"
#include "ui/message_box.h"
#include "ui/shown_text.h"

namespace {

constexpr int Gap = 1;              // pixels between two buttons
constexpr int LongestCaption = 40;  // characters
constexpr int LeastWidth = 60;      // pixels
constexpr int MarkWidth = 2;
constexpr int IconDelay = 100;    // milliseconds in which the icons of several pages come together
constexpr int IconPatience = 20;  // milliseconds that reading the icons of a menu may take

}  // namespace

TLinksBar::TLinksBar(TFavoriteLauncher &launcher, TFavoriteCommands &commands, const TFavoriteIcons &icons,
                     const TLanguage &language, TSettings &settings, QWidget *parent)
    : QWidget(parent),
      m_launcher(launcher),
      m_commands(commands),
      m_icons(icons),
      m_language(language),
      m_settings(settings),
      m_menus(launcher, icons, language, settings, Setting::LinksNewWin),
      m_menu(new QMenu(language.Global("Links"), this)),
      m_extenderMenu(new QMenu(this)),
      m_extender(new QToolButton(this)),
      m_mark(new QWidget(this)) {
  setObjectName(QStringLiteral("pnlLinks"));
  setAcceptDrops(true);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  m_menu->setObjectName(QStringLiteral("pmLinks"));
  m_favorites = new TFavoriteMenu(
      m_menu, [this] { return FavoritesFolder::LinksPath(m_settings.Store()); }, TFavoriteMenu::TKind::Folder, m_menus);
  connect(m_favorites, &TFavoriteMenu::Filled, this, &TLinksBar::Rebuild);
  connect(&m_menus, &TFavoriteMenus::MenuWanted, this, [this](const TFavorite &favorite, const QPoint &place) {
    m_commands.ShowMenu(favorite, place, Setting::LinksNewWin);
  });
  m_extenderMenu->setObjectName(QStringLiteral("pmLinksBarExtender"));
  connect(m_extenderMenu, &QMenu::aboutToShow, this, &TLinksBar::FillExtender);
  m_extender->setObjectName(QStringLiteral("tbxLinks"));
  m_extender->setAutoRaise(true);
  m_extender->setArrowType(Qt::DownArrow);
  m_extender->setMenu(m_extenderMenu);
  m_extender->setPopupMode(QToolButton::InstantPopup);
  m_extender->setAccessibleName(language.Text("MAIN", "ToolbarMore"));
  m_extender->setToolTip(language.Text("MAIN", "ToolbarMore"));
  m_extender->installEventFilter(this);
  m_extender->hide();
  m_menus.Serve(m_extenderMenu);
  for (const QMenu *menu : {m_menu, m_extenderMenu}) FollowClosing(menu);
  m_mark->setAutoFillBackground(true);
  m_mark->setBackgroundRole(QPalette::Highlight);
  m_mark->hide();
  m_iconTimer.setSingleShot(true);
  connect(&m_iconTimer, &QTimer::timeout, this, &TLinksBar::ShowIcons);
  connect(&icons, &TFavoriteIcons::Came, this, [this] { m_iconTimer.start(IconDelay); });
  settings.Follow(Setting::UseCustomIcons, this, [this] { m_iconTimer.start(0); });
}

TLinksBar::~TLinksBar() = default;

void TLinksBar::Refresh() {
  // The times of some disks are too coarse to tell a change from the one before.
  m_menus.MarkStale();
  m_isStale = m_isDragging || HasOpenMenu();
  if (m_isStale) return;
  const bool isThere = QFileInfo(FavoritesFolder::LinksPath(m_settings.Store())).isDir();
  if (isThere) m_favorites->Load();
  if (std::exchange(m_isThere, isThere) != isThere) Q_EMIT ThereChanged();
}

void TLinksBar::MakeFolder() {
  const QString folder = FavoritesFolder::LinksPath(m_settings.Store());
  if (!QFileInfo(folder).isDir() && !FavoritesFolder::Make(folder)) Tell(qt_error_string());
  Refresh();
}

void TLinksBar::Organize() {
  MakeFolder();
  Q_EMIT OrganizeWanted(FavoritesFolder::LinksPath(m_settings.Store()));
}

bool TLinksBar::HasOpenMenu() const {
  return m_menu->isVisible() || m_extenderMenu->isVisible() || std::ranges::any_of(m_buttons, [](const auto *button) {
           return button->menu() != nullptr && button->menu()->isVisible();
         });
}

void TLinksBar::FollowClosing(const QMenu *menu) {
  // What was chosen in it is carried out first.
  const auto refresh = [this] {
    if (m_isStale) Refresh();
  };
  connect(menu, &QMenu::aboutToHide, this, refresh, Qt::QueuedConnection);
}

void TLinksBar::Rebuild() {
  const QString focused = FavoriteOf(qobject_cast<QToolButton *>(focusWidget())).path;
  qDeleteAll(std::exchange(m_buttons, {}));
  qDeleteAll(std::exchange(m_customize, {}));
  m_shown.clear();
  m_addresses.clear();
  for (QAction *item : m_menu->actions()) {
    const TFavorite favorite = TFavoriteMenus::FavoriteOf(item);
    if (!favorite.path.isEmpty()) AddButton(item, favorite);
  }
  m_customize.append(m_menu->addSeparator());
  m_customize.append(m_menu->addAction(m_language.Text("MAIN", "CustomizeLinks")));
  connect(m_customize.last(), &QAction::triggered, this, &TLinksBar::Organize);
  OrderForKeys();
  updateGeometry();
  Arrange();
  for (qsizetype i = 0; i < m_buttons.size(); ++i) {
    if (m_shown.at(i).path == focused) m_buttons.at(i)->setFocus();
  }
  m_iconTimer.start(0);
}

void TLinksBar::AddButton(QAction *item, const TFavorite &favorite) {
  auto *button = new QToolButton(this);
  button->setAutoRaise(true);
  button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  button->setIcon(favorite.isFolder ? m_icons.Folder() : m_icons.Page());
  button->setText(MenuText(favorite.caption, LongestCaption));
  button->setAccessibleName(favorite.caption);
  button->setFocusPolicy(Qt::TabFocus);
  button->installEventFilter(this);
  if (favorite.isFolder) {
    button->setMenu(item->menu());
    // Not as soon as it is pressed: it may be dragged.
    button->setPopupMode(QToolButton::DelayedPopup);
    connect(button, &QToolButton::clicked, button, &QToolButton::showMenu);
    FollowClosing(item->menu());
  } else {
    connect(button, &QToolButton::clicked, this, [this, favorite] {
      const bool inBackground = QApplication::keyboardModifiers().testFlag(Qt::ControlModifier);
      m_launcher.Open(favorite, inBackground ? TOpenPlace::BackgroundTab : TOpenPlace::BySetting, Setting::LinksNewWin);
    });
  }
  m_buttons.append(button);
  m_shown.append(favorite);
}

// In the order in which they stand, whenever each was made; the button for the rest is the last.
void TLinksBar::OrderForKeys() {
  QWidget *before = m_extender;
  for (QToolButton *button : m_buttons) {
    setTabOrder(before, button);
    before = button;
  }
  if (before != m_extender) setTabOrder(before, m_extender);
}

void TLinksBar::ShowIcons() {
  for (qsizetype i = 0; i < m_buttons.size(); ++i) {
    if (!m_buttons.at(i)->isHidden()) ShowIcon(i);
  }
}

// Reads the file the first time.
void TLinksBar::ShowIcon(qsizetype number) {
  const TFavorite &favorite = m_shown.at(number);
  if (favorite.isFolder) return;
  QIcon icon = m_icons.Page();
  if (m_icons.HasOwn()) {
    QString &address = m_addresses[favorite.path];
    if (address.isEmpty()) address = FavoritesFolder::Target(favorite);
    icon = m_icons.OfAddress(address);
  }
  if (icon.cacheKey() != m_buttons.at(number)->icon().cacheKey()) m_buttons.at(number)->setIcon(icon);
}

QSize TLinksBar::sizeHint() const {
  int width = 0;
  int height = m_extender->sizeHint().height();
  for (const QToolButton *button : m_buttons) {
    width += button->sizeHint().width() + Gap;
    height = qMax(height, button->sizeHint().height());
  }
  return {qMax(width, LeastWidth), height};
}

QSize TLinksBar::minimumSizeHint() const {
  return {LeastWidth, sizeHint().height()};
}

void TLinksBar::Arrange() {
  const auto place = [this](QWidget *widget, int x, int width) {
    const int left = isRightToLeft() ? this->width() - x - width : x;
    widget->setGeometry(left, 0, width, height());
  };
  const bool fits = m_buttons.isEmpty() || sizeHint().width() <= width();
  const int extender = fits ? 0 : m_extender->sizeHint().width();
  m_extender->setVisible(!fits);
  if (!fits) place(m_extender, width() - extender, extender);
  int x = 0;
  bool isOver = false;  // what follows the first that does not fit is behind the extender, too
  for (QToolButton *button : m_buttons) {
    const int wanted = button->sizeHint().width();
    isOver = isOver || x + wanted > width() - extender;
    if (button->isHidden() && !isOver) m_iconTimer.start(0);
    button->setVisible(!isOver);
    if (!isOver) place(button, x, wanted);
    x += wanted + Gap;
  }
}

void TLinksBar::resizeEvent(QResizeEvent *event) {
  QWidget::resizeEvent(event);
  Arrange();
}

void TLinksBar::FillExtender() {
  m_extenderMenu->clear();
  QElapsedTimer time;
  time.start();
  for (qsizetype i = 0; i < m_buttons.size(); ++i) {
    const QToolButton *button = m_buttons.at(i);
    if (!button->isHidden()) continue;
    if (button->menu() != nullptr) {
      m_extenderMenu->addAction(button->menu()->menuAction());
    } else {
      // Of very many links the menu is there at once, without all of their icons.
      if (!time.hasExpired(IconPatience)) ShowIcon(i);
      m_menus.AddLink(m_extenderMenu, m_shown.at(i), button->icon());
    }
  }
  m_extenderMenu->addSeparator();
  QAction *customize = m_extenderMenu->addAction(m_language.Text("MAIN", "CustomizeLinks"));
  customize->setToolTip(TLanguage::ShortHint(m_language.Text("MAIN", "CustomizeLinksHint")));
  customize->setStatusTip(TLanguage::LongHint(m_language.Text("MAIN", "CustomizeLinksHint")));
  connect(customize, &QAction::triggered, this, &TLinksBar::Organize);
}

TFavorite TLinksBar::FavoriteOf(const QToolButton *button) const {
  return m_shown.value(m_buttons.indexOf(button));
}

bool TLinksBar::eventFilter(QObject *watched, QEvent *event) {
  auto *button = qobject_cast<QToolButton *>(watched);
  const bool isLink = m_buttons.contains(button);
  if (!isLink && button != m_extender) return QWidget::eventFilter(watched, event);
  if (event->type() == QEvent::KeyPress && TakeKey(button, static_cast<QKeyEvent &>(*event))) return true;
  if (!isLink) return QWidget::eventFilter(watched, event);
  switch (event->type()) {
    case QEvent::ToolTip:
      // Reads the file, so only now.
      button->setToolTip(button->menu() != nullptr ? QString()
                                                   : PlainTip(FavoritesFolder::Hint(FavoriteOf(button)))
                                                         .replace(QLatin1String("\r\n"), QLatin1String("<br>")));
      break;
    case QEvent::ContextMenu:
      m_commands.ShowMenu(FavoriteOf(button), static_cast<QContextMenuEvent *>(event)->globalPos(),
                          Setting::LinksNewWin);
      return true;
    case QEvent::MouseButtonPress:
      m_pressed = static_cast<QMouseEvent *>(event)->position().toPoint();
      break;
    case QEvent::MouseButtonRelease:
      OpenByMouse(button, static_cast<QMouseEvent &>(*event));
      break;
    case QEvent::MouseMove: {
      const auto &move = static_cast<QMouseEvent &>(*event);
      const int far = (move.position().toPoint() - m_pressed).manhattanLength();
      if (button->isDown() && move.buttons().testFlag(Qt::LeftButton) && far >= QApplication::startDragDistance()) {
        Drag(button);
        return true;
      }
      break;
    }
    default:
      break;
  }
  return QWidget::eventFilter(watched, event);
}

void TLinksBar::OpenByMouse(const QToolButton *button, const QMouseEvent &click) {
  if (click.button() != Qt::MiddleButton || !button->rect().contains(click.position().toPoint())) return;
  m_launcher.Open(FavoriteOf(button), TOpenPlace::BackgroundTab);
}

bool TLinksBar::TakeKey(QToolButton *button, const QKeyEvent &key) {
  QList<QToolButton *> shown;
  for (QToolButton *one : m_buttons + QList{m_extender}) {
    if (!one->isHidden()) shown.append(one);
  }
  const Qt::Key back = isRightToLeft() ? Qt::Key_Right : Qt::Key_Left;
  qsizetype to = shown.indexOf(button);
  switch (key.key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
      to += key.key() == back ? -1 : 1;
      break;
    case Qt::Key_Home:
      to = 0;
      break;
    case Qt::Key_End:
      to = shown.size() - 1;
      break;
    case Qt::Key_Down:
      if (button->menu() != nullptr) button->showMenu();
      return true;
    case Qt::Key_Up:
      return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      button->animateClick();
      return true;
    default:
      return false;
  }
  if (to >= 0 && to < shown.size()) shown.at(to)->setFocus(Qt::TabFocusReason);
  return true;
}

void TLinksBar::Drag(QToolButton *button) {
  const TFavorite favorite = FavoriteOf(button);
  button->setDown(false);
  // As a file, which a folder or the trash can take, and as its address for whoever takes texts or pages.
  QMimeData *data = FavoriteDrag::DataOf({favorite.path});
  const QString target = FavoritesFolder::Target(favorite);
  if (!favorite.isFolder && target != favorite.path) {
    data->setText(target);
    PageShortcut::AddTitled(*data, favorite.caption, target);
  }
  auto *drag = new QDrag(this);
  drag->setMimeData(data);
  drag->setPixmap(button->icon().pixmap(button->iconSize()));
  m_isDragging = true;
  const QPointer<TLinksBar> self(this);
  drag->exec(Qt::CopyAction | Qt::MoveAction | Qt::LinkAction, Qt::CopyAction);
  if (!self) return;
  m_isDragging = false;
  // Not now: the button is still on the way back from it.
  QMetaObject::invokeMethod(this, &TLinksBar::Refresh, Qt::QueuedConnection);
}

void TLinksBar::contextMenuEvent(QContextMenuEvent *event) {
  m_favorites->Load();
  m_menu->popup(event->globalPos());
}

TLinksBar::TDropPlace TLinksBar::PlaceAt(const QPoint &place) const {
  TDropPlace found{FavoritesFolder::LinksPath(m_settings.Store()), 0, nullptr, 0};
  for (QToolButton *button : m_buttons) {
    if (button->isHidden()) break;
    const QRect room = button->geometry();
    const int quarter = room.width() / 4;
    if (button->menu() != nullptr && room.adjusted(quarter, 0, -quarter, 0).contains(place)) {
      return {FavoriteOf(button).path, FavoritesEdit::NoPosition, button, 0};
    }
    if (isRightToLeft() ? place.x() > room.center().x() : place.x() < room.center().x()) break;
    ++found.position;
    found.x = isRightToLeft() ? room.left() : room.right() + 1;
  }
  if (found.position == 0 && isRightToLeft()) found.x = width();
  return found;
}

// Nullptr: nothing is dragged here any more.
void TLinksBar::ShowPlace(const TDropPlace *place) {
  for (QToolButton *button : m_buttons) button->setDown(place != nullptr && button == place->into);
  m_mark->setVisible(place != nullptr && place->into == nullptr);
  if (place == nullptr) return;
  m_mark->setGeometry(qBound(0, place->x - MarkWidth / 2, width() - MarkWidth), 0, MarkWidth, height());
  m_mark->raise();
}

void TLinksBar::dragEnterEvent(QDragEnterEvent *event) {
  if (DroppedFavorites::CanTake(*event->mimeData())) event->acceptProposedAction();
}

void TLinksBar::dragMoveEvent(QDragMoveEvent *event) {
  const TDropPlace place = PlaceAt(event->position().toPoint());
  ShowPlace(&place);
  DroppedFavorites::Propose(*event);
}

void TLinksBar::dragLeaveEvent(QDragLeaveEvent *event) {
  ShowPlace(nullptr);
  QWidget::dragLeaveEvent(event);
}

void TLinksBar::dropEvent(QDropEvent *event) {
  ShowPlace(nullptr);
  const TDropPlace place = PlaceAt(event->position().toPoint());
  const DroppedFavorites::TDropped dropped = DroppedFavorites::In(*event->mimeData());
  const bool isCopied = DroppedFavorites::IsCopied(*event);
  // The one that it comes from takes nothing away: that is done here.
  event->setDropAction(Qt::CopyAction);
  event->accept();
  // A folder on its own button is where it is.
  if (dropped.paths.contains(place.folder)) return;
  const auto work = [dropped, isCopied, folder = place.folder, position = place.position,
                     tooMuch = m_language.Text("FOLDER_VIEW", "TooMuch")] {
    if (DroppedFavorites::IsTooMuch(dropped)) return TFavoritesChange{.error = tooMuch};
    return DroppedFavorites::Take(dropped, folder, position, isCopied);
  };
  m_work.Do(work, [this](const TFavoritesChange &change) {
    // Not now: the button that is being dragged would go with it, and the drag would wait for the answer.
    const auto end = [this, error = change.error] {
      if (!error.isEmpty()) Tell(error);
      Q_EMIT Changed();
    };
    QMetaObject::invokeMethod(this, end, Qt::QueuedConnection);
  });
}

void TLinksBar::Tell(const QString &error) {
  ShowWarning(this, m_language, m_language.Text("FAVORITES", "CannotChange").arg(error));
}
