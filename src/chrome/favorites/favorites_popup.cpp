#include "chrome/favorites/favorites_popup.h"

#include <algorithm>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QStyleOption>
#include <QVBoxLayout>

#include "chrome/favorites/favorite_icons.h"
#include "chrome/folder_view/folder_view.h"
#include "chrome/folder_view/message_line.h"
#include "config/language.h"
#include "config/settings.h"
#include "ui/ink_icon.h"

namespace {

// The toolkit's own has the window manager do it, which knows nothing of pop-up windows.
class TCornerGrip final : public QWidget {
 public:
  explicit TCornerGrip(QWidget *parent) : QWidget(parent) {
    setFixedSize(Side, Side);
    setCursor(isRightToLeft() ? Qt::SizeBDiagCursor : Qt::SizeFDiagCursor);
  }

 protected:
  void mousePressEvent(QMouseEvent *event) override {
    m_pressed = event->globalPosition().toPoint();
    m_before = window()->geometry();
  }
  void mouseMoveEvent(QMouseEvent *event) override {
    const QPoint moved = event->globalPosition().toPoint() - m_pressed;
    QRect place = m_before;
    place.setHeight(qMax(TfrmFavorites::Smallest.height(), place.height() + moved.y()));
    if (isRightToLeft()) {
      place.setLeft(qMin(place.right() + 1 - TfrmFavorites::Smallest.width(), place.left() + moved.x()));
    } else {
      place.setWidth(qMax(TfrmFavorites::Smallest.width(), place.width() + moved.x()));
    }
    window()->setGeometry(place);
  }
  void paintEvent(QPaintEvent *) override {
    QPainter painter(this);
    QStyleOptionSizeGrip option;
    option.initFrom(this);
    option.corner = isRightToLeft() ? Qt::BottomLeftCorner : Qt::BottomRightCorner;
    style()->drawControl(QStyle::CE_SizeGrip, &option, &painter, this);
  }

 private:
  static constexpr int Side = 14;  // pixels

  QPoint m_pressed;
  QRect m_before;
};

}  // namespace

TfrmFavorites::TKind::TKind(TfrmFavorites &window, TFavoriteLauncher &launcher, const TFavoriteIcons &icons)
    : TFavoriteKind(launcher, icons),
      m_window(window),
      m_inkFolder(InkIcon(icons.Folder())),
      m_inkPage(InkIcon(icons.Page())) {}

bool TfrmFavorites::TKind::IsInk() const {
  return !m_window.m_settings.Get(Setting::ToolbarShowColor);
}

QIcon TfrmFavorites::TKind::FolderIcon() const {
  return IsInk() ? m_inkFolder : TFavoriteKind::FolderIcon();
}

QIcon TfrmFavorites::TKind::FileIcon() const {
  return IsInk() ? m_inkPage : TFavoriteKind::FileIcon();
}

int TfrmFavorites::TKind::IconVersion() const {
  return TFavoriteKind::IconVersion() * 2 + int(IsInk());
}

void TfrmFavorites::TKind::Open(const TFavorite &file, TOpenPlace place) {
  if (place != TOpenPlace::BackgroundTab) m_window.close();
  TFavoriteKind::Open(file, place);
}

void TfrmFavorites::TKind::OpenAll(const QString &folder) {
  m_window.close();
  TFavoriteKind::OpenAll(folder);
}

TfrmFavorites::TfrmFavorites(const TLanguage &language, TFavoriteLauncher &launcher, const TFavoriteIcons &icons,
                             TSettings &settings, QWidget *parent)
    : QFrame(parent, Qt::Popup),
      m_settings(settings),
      m_commands(parent, launcher, language),
      m_kind(*this, launcher, icons),
      m_tree(new TFolderView(m_kind, m_editor, language, TFolderView::TLook::Tree)),
      m_message(new TMessageLine) {
  setObjectName(QStringLiteral("TfrmFavorites"));
  setFrameStyle(StyledPanel | Raised);
  setMinimumSize(Smallest);
  const QString title = TLanguage::ShortHint(language.Text("FAVORITES_POPUP", "ShowFavoritesHint"));
  setWindowTitle(title);
  m_tree->setObjectName(QStringLiteral("tvFavorites"));
  m_tree->setAccessibleName(title);
  m_tree->setFrameShape(NoFrame);
  m_tree->SetOpensOnClick(true);
  auto *layout = new QVBoxLayout(this);
  layout->setContentsMargins(QMargins());
  layout->setSpacing(0);
  layout->addWidget(m_tree, 1);
  layout->addWidget(m_message);
  layout->addWidget(new TCornerGrip(this), 0, Qt::AlignRight | Qt::AlignBottom);
  m_kind.Serve(*m_tree);
  connect(m_tree, &TFolderView::Told, m_message, &TMessageLine::Show);
  connect(m_tree, &TFolderView::PropertiesWanted, this, [this](const TFavorite &favorite) {
    close();  // a dialog has no business beside it
    m_commands.ShowProperties(favorite);
  });
  connect(&m_commands, &TFavoriteCommands::Done, &m_editor, &TFolderEditor::Note);
  connect(&m_editor, &TFolderEditor::Done, this, [this] {
    m_message->Show(QString());
    Q_EMIT Changed();
  });
  connect(&m_editor, &TFolderEditor::Failed, m_message, [this, &language](const QString &reason) {
    m_message->Show(language.Text("FAVORITES", "CannotChange").arg(reason));
  });
}

void TfrmFavorites::ShowBelow(const QRect &button, const QString &folder) {
  if (isVisible()) return;
  m_button = button;
  const QScreen *screen = QGuiApplication::screenAt(button.center());
  if (screen == nullptr) screen = parentWidget()->screen();
  const QRect room = screen->availableGeometry();
  const QSize stored(m_settings.Get(Setting::FavoritesWidth), m_settings.Get(Setting::FavoritesHeight));
  QRect place(QPoint(), stored.boundedTo(room.size()).expandedTo(Smallest));
  place.moveTop(button.bottom() + 1);
  isRightToLeft() ? place.moveRight(button.right()) : place.moveLeft(button.left());
  place.moveRight(qMin(place.right(), room.right()));
  place.moveBottom(qMin(place.bottom(), room.bottom()));
  place.moveLeft(qMax(place.left(), room.left()));
  place.moveTop(qMax(place.top(), room.top()));
  m_message->Show(QString());
  if (m_tree->Model().Root() != folder) {
    m_tree->SetRoot(folder, windowTitle());
  } else {
    m_tree->Refresh();
  }
  setGeometry(place);
  setAttribute(Qt::WA_NoMouseReplay, false);
  show();
  m_tree->setFocus(Qt::PopupFocusReason);
}

void TfrmFavorites::Refresh() {
  if (isVisible()) m_tree->Refresh();
}

void TfrmFavorites::keyPressEvent(QKeyEvent *event) {
  if (event->key() == Qt::Key_Escape) {
    close();
  } else {
    QFrame::keyPressEvent(event);
  }
}

// Only a click elsewhere comes here.
void TfrmFavorites::mousePressEvent(QMouseEvent *event) {
  // The button is not to open again what its click has just closed.
  setAttribute(Qt::WA_NoMouseReplay, m_button.contains(event->globalPosition().toPoint()));
  QFrame::mousePressEvent(event);
}

void TfrmFavorites::hideEvent(QHideEvent *event) {
  QFrame::hideEvent(event);
  // What the screen had no room for stays as it was.
  const QSize stored(m_settings.Get(Setting::FavoritesWidth), m_settings.Get(Setting::FavoritesHeight));
  if (size() == stored.boundedTo(screen()->availableSize()).expandedTo(Smallest)) return;
  m_settings.Set(Setting::FavoritesWidth, width());
  m_settings.Set(Setting::FavoritesHeight, height());
}
