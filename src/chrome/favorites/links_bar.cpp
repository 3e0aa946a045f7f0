#include "chrome/favorites/links_bar.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QDrag>
#include <QFileInfo>
#include <QMenu>
#include <QMimeData>
#include <QUrl>
#include <utility>

#include "browser/strip/link_mime.h"
#include "chrome/favorites/favorite_commands.h"
#include "chrome/favorites/favorite_icons.h"
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
      m_extender(new QToolButton(this)) {
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
  m_extender->hide();
}

TLinksBar::~TLinksBar() = default;

void TLinksBar::Refresh() {
  if (m_isDragging) return;
  const bool isThere = QFileInfo(FavoritesFolder::LinksPath(m_settings.Store())).isDir();
  if (isThere) m_favorites->Load();
  if (std::exchange(m_isThere, isThere) != isThere) Q_EMIT ThereChanged();
}

void TLinksBar::Rebuild() {
  qDeleteAll(std::exchange(m_buttons, {}));
  qDeleteAll(std::exchange(m_customize, {}));
  m_shown.clear();
  for (QAction *item : m_menu->actions()) {
    if (const TFavorite *favorite = m_favorites->FavoriteOf(item)) AddButton(item, *favorite);
  }
  m_customize.append(m_menu->addSeparator());
  m_customize.append(m_menu->addAction(m_language.Text("MAIN", "CustomizeLinks")));
  connect(m_customize.last(), &QAction::triggered, this, [this] { Q_EMIT OrganizeWanted(m_favorites->Folder()); });
  updateGeometry();
  Arrange();
  QTimer::singleShot(0, this, &TLinksBar::ShowIcons);
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
    button->setPopupMode(QToolButton::InstantPopup);
  } else {
    connect(button, &QToolButton::clicked, this, [this, favorite] {
      const bool inBackground = QApplication::keyboardModifiers().testFlag(Qt::ControlModifier);
      m_launcher.Open(favorite, inBackground ? TFavoritePlace::BackgroundTab : TFavoritePlace::BySetting,
                      Setting::LinksNewWin);
    });
  }
  m_buttons.append(button);
  m_shown.append(favorite);
}

void TLinksBar::ShowIcons() {
  if (!m_icons.HasOwn()) return;
  for (qsizetype i = 0; i < m_buttons.size(); ++i) {
    if (!m_shown.at(i).isFolder) m_buttons.at(i)->setIcon(m_icons.Of(m_shown.at(i)));
  }
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
  for (qsizetype i = 0; i < m_buttons.size(); ++i) {
    QToolButton *button = m_buttons.at(i);
    if (!button->isHidden()) continue;
    if (button->menu() != nullptr) {
      m_extenderMenu->addAction(button->menu()->menuAction());
    } else {
      QAction *item = m_extenderMenu->addAction(button->icon(), MenuText(m_shown.at(i).caption));
      connect(item, &QAction::triggered, button, &QToolButton::click);
    }
  }
  m_extenderMenu->addSeparator();
  QAction *customize = m_extenderMenu->addAction(m_language.Text("MAIN", "CustomizeLinks"));
  customize->setToolTip(TLanguage::ShortHint(m_language.Text("MAIN", "CustomizeLinksHint")));
  customize->setStatusTip(TLanguage::LongHint(m_language.Text("MAIN", "CustomizeLinksHint")));
  connect(customize, &QAction::triggered, this, [this] { Q_EMIT OrganizeWanted(m_favorites->Folder()); });
}

TFavorite TLinksBar::FavoriteOf(const QToolButton *button) const {
  return m_shown.value(m_buttons.indexOf(const_cast<QToolButton *>(button)));
}

QToolButton *TLinksBar::ButtonAt(const QPoint &place) const {
  for (QToolButton *button : m_buttons) {
    if (!button->isHidden() && button->geometry().contains(place)) return button;
  }
  return nullptr;
}

int TLinksBar::PositionAt(const QPoint &place) const {
  int position = 0;
  for (const QToolButton *button : m_buttons) {
    const int middle = button->geometry().center().x();
    if (button->isHidden() || (isRightToLeft() ? place.x() > middle : place.x() < middle)) break;
    ++position;
  }
  return position;
}

bool TLinksBar::eventFilter(QObject *watched, QEvent *event) {
  auto *button = qobject_cast<QToolButton *>(watched);
  if (button == nullptr || !m_buttons.contains(button)) return QWidget::eventFilter(watched, event);
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
    case QEvent::MouseButtonRelease: {
      const auto &click = static_cast<QMouseEvent &>(*event);
      if (click.button() == Qt::MiddleButton && button->rect().contains(click.position().toPoint())) {
        m_launcher.Open(FavoriteOf(button), TFavoritePlace::BackgroundTab);
        return true;
      }
      break;
    }
    case QEvent::MouseMove: {
      const auto &move = static_cast<QMouseEvent &>(*event);
      const int far = (move.position().toPoint() - m_pressed).manhattanLength();
      if (move.buttons().testFlag(Qt::LeftButton) && far >= QApplication::startDragDistance()) {
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

void TLinksBar::Drag(QToolButton *button) {
  const TFavorite favorite = FavoriteOf(button);
  button->setDown(false);
  QMimeData *data = FavoriteDrag::DataOf({favorite.path});
  const QString target = FavoritesFolder::Target(favorite);
  if (!favorite.isFolder) {
    data->setText(target);
    data->setUrls({QUrl(target)});
  }
  auto *drag = new QDrag(this);
  drag->setMimeData(data);
  drag->setPixmap(button->icon().pixmap(button->iconSize()));
  m_isDragging = true;
  const QPointer<TLinksBar> self(this);
  drag->exec(Qt::CopyAction | Qt::MoveAction | Qt::LinkAction);
  if (!self) return;
  m_isDragging = false;
  QTimer::singleShot(0, this, &TLinksBar::Refresh);
}

void TLinksBar::contextMenuEvent(QContextMenuEvent *event) {
  m_favorites->Load();
  m_menu->popup(event->globalPos());
}

void TLinksBar::dragEnterEvent(QDragEnterEvent *event) {
  if (FavoriteDrag::AreFavorites(*event->mimeData()) || !LinksIn(*event->mimeData()).isEmpty()) {
    event->acceptProposedAction();
  }
}

void TLinksBar::dragMoveEvent(QDragMoveEvent *event) {
  event->acceptProposedAction();
}

void TLinksBar::dropEvent(QDropEvent *event) {
  const QPoint place = event->position().toPoint();
  const QToolButton *button = ButtonAt(place);
  const TFavorite over = button != nullptr ? FavoriteOf(button) : TFavorite();
  const QString folder = over.isFolder ? over.path : FavoritesFolder::LinksPath(m_settings.Store());
  int position = over.isFolder ? FavoritesEdit::NoPosition : PositionAt(place);
  TFavoritesChange change;
  if (FavoriteDrag::AreFavorites(*event->mimeData())) {
    const QStringList paths = FavoriteDrag::PathsIn(*event->mimeData());
    if (paths.contains(folder)) return;
    change = FavoritesEdit::Move(paths, folder, position);
    event->setDropAction(Qt::MoveAction);
  } else {
    // The title, where the one that it comes from tells it: a line behind the address.
    const QByteArray titled = event->mimeData()->data(QStringLiteral("text/x-moz-url"));
    const QString title =
        QString(reinterpret_cast<const QChar *>(titled.constData()), titled.size() / 2).section(u'\n', 1, 1);
    for (const QString &address : LinksIn(*event->mimeData())) {
      const QString host = QUrl(address).host();
      const QString name = !title.isEmpty() ? title : host;
      change = FavoritesEdit::AddPage(folder, name, address, position);
      if (!change.IsGood()) break;
      if (position >= 0) ++position;
    }
    event->setDropAction(Qt::CopyAction);
  }
  event->accept();
  if (!change.IsGood()) {
    ShowWarning(this, m_language, m_language.Text("FAVORITES", "CannotChange").arg(change.error));
  }
  // Not now: the button that is being dragged would go with it.
  QMetaObject::invokeMethod(
      this, [this] { Q_EMIT Changed(); }, Qt::QueuedConnection);
}
