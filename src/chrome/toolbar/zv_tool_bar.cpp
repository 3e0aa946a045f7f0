#include "chrome/toolbar/zv_tool_bar.h"

#include <algorithm>
#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QMenu>
#include <QPainter>
#include <QStyleOption>
#include <QToolButton>

#include "actions/actions.h"
#include "chrome/toolbar/tool_button_kinds.h"
#include "config/language.h"
#include "ui/ink_icon.h"
#include "ui/shown_text.h"

namespace {

// Pixels.
constexpr int ButtonHeight = 26;
constexpr int ButtonWidth = 27;
constexpr int SeparatorWidth = 5;
constexpr int IconSize = 20;
constexpr int LeastWidth = 40;

bool OffersAnything(const QMenu &menu) {
  const QList<QAction *> items = menu.actions();
  return std::ranges::any_of(items, [](const QAction *item) { return !item->isSeparator() && item->isEnabled(); });
}

}  // namespace

TZVToolBar::TZVToolBar(const TActions &actions, const TLanguage &language, bool hasSearchMenu, QWidget *parent)
    : QWidget(parent), m_actions(actions), m_language(language), m_hasSearchMenu(hasSearchMenu) {
  setObjectName(QStringLiteral("tbMain"));
}

void TZVToolBar::SetEntries(const TToolbarEntries &entries) {
  setUpdatesEnabled(false);
  // One of them may be what brought this about, and is to hear the end of its click.
  for (const TItem &item : m_items) {
    if (item.button == nullptr) continue;
    item.button->hide();
    item.button->setObjectName(QString());
    item.button->deleteLater();
  }
  m_items.clear();
  m_entries = entries;
  m_items.reserve(size_t(entries.size()));
  for (const TToolbarEntry &entry : entries) m_items.push_back(Build(entry));
  PlaceItems();
  ShowItems();
  setUpdatesEnabled(true);
  updateGeometry();
  Q_EMIT EntriesChanged();
}

TZVToolBar::TItem TZVToolBar::Build(const TToolbarEntry &entry) {
  TItem item;
  item.kind = ToolButtonKindOf(entry.index);
  item.shows = entry.visible;
  item.width = SeparatorWidth;
  if (entry.index == TToolbarEntry::Separator) return item;
  item.button = BuildButton(item.kind);
  SetIcon(item);
  item.width = ButtonWidth;
  if (item.button->popupMode() == QToolButton::MenuButtonPopup) {
    item.width += style()->pixelMetric(QStyle::PM_MenuButtonIndicator, nullptr, item.button);
  }
  return item;
}

// Without a kind it is an empty button that does nothing.
QToolButton *TZVToolBar::BuildButton(const TToolButtonKind *kind) {
  auto *button = new QToolButton(this);
  button->setAutoRaise(true);
  button->setFocusPolicy(Qt::NoFocus);  // each command has a menu item or a key
  button->setIconSize(QSize(IconSize, IconSize));
  button->hide();
  button->installEventFilter(this);
  button->setEnabled(kind != nullptr);
  if (kind == nullptr) return button;
  button->setObjectName(QString::fromLatin1(kind->name));
  const QString hint = m_language.Text(kind->hint);
  QAction *action = kind->command != TCommand::Count ? m_actions[kind->command] : nullptr;
  button->setToolTip(TActions::WithKeys(TLanguage::ShortHint(hint), action));
  button->setStatusTip(TLanguage::LongHint(hint));
  button->setAccessibleName(TLanguage::ShortHint(hint));
  button->setCheckable(kind->style == TToolButtonStyle::Check);
  if (DropsMenu(*kind)) {
    button->setMenu(m_actions.Menu(kind->menu));
    button->setPopupMode(kind->style == TToolButtonStyle::Menu ? QToolButton::InstantPopup
                                                               : QToolButton::MenuButtonPopup);
  }
  if (action != nullptr) Follow(button, action);
  return button;
}

bool TZVToolBar::DropsMenu(const TToolButtonKind &kind) const {
  return kind.menu != TMenu::Count && (kind.menu != TMenu::SearchEngines || m_hasSearchMenu);
}

// Not as the button's default action, whose icon, text and hint it would take with every change.
void TZVToolBar::Follow(QToolButton *button, QAction *action) {
  const auto show = [button, action] {
    button->setEnabled(action->isEnabled());
    if (button->isCheckable()) button->setChecked(action->isChecked());
  };
  show();
  connect(action, &QAction::changed, button, show);
  connect(button, &QToolButton::clicked, action, [action, show] {
    action->trigger();
    show();
  });
}

void TZVToolBar::SetIcon(const TItem &item) const {
  if (item.kind == nullptr || item.button == nullptr) return;
  const QIcon icon = CommandIcon(item.kind->icon);
  item.button->setIcon(m_showsColor ? icon : InkIcon(icon));
}

void TZVToolBar::SetShowsColor(bool shows) {
  if (shows == m_showsColor) return;
  m_showsColor = shows;
  for (const TItem &item : m_items) SetIcon(item);
}

QToolButton *TZVToolBar::FindButton(const QString &name) const {
  const auto found = std::ranges::find_if(
      m_items, [&](const TItem &item) { return item.button != nullptr && item.button->objectName() == name; });
  return found != m_items.end() ? found->button : nullptr;
}

QRect TZVToolBar::PlaceOf(const QString &name) const {
  const QToolButton *button = FindButton(name);
  const auto item = std::ranges::find(m_items, button, &TItem::button);
  if (button == nullptr || !item->shows) return {};
  QRect place = button->geometry();
  if (item->Right() > width()) place.moveLeft(isRightToLeft() ? 0 : width() - place.width());
  return {mapToGlobal(place.topLeft()), place.size()};
}

void TZVToolBar::PlaceItems() {
  int left = 0;
  for (TItem &item : m_items) {
    if (!item.shows) continue;
    item.left = left;
    left += item.width;
  }
}

int TZVToolBar::Length() const {
  int length = 0;
  for (const TItem &item : m_items) {
    if (item.shows) length = item.Right();
  }
  return length;
}

void TZVToolBar::ShowItems() {
  const int top = (height() - ButtonHeight) / 2;
  for (const TItem &item : m_items) {
    if (item.button == nullptr) continue;
    const QRect place(item.left, top, item.width, ButtonHeight);
    item.button->setGeometry(QStyle::visualRect(layoutDirection(), rect(), place));
    item.button->setVisible(item.shows && item.Right() <= width());
  }
  update();
}

void TZVToolBar::AddRestTo(QMenu &menu) const {
  for (const TItem &item : m_items) {
    if (!item.shows || item.Right() <= width()) continue;
    if (item.button == nullptr) {
      if (!menu.isEmpty()) menu.addSeparator();
    } else if (item.kind != nullptr) {
      AddRestItem(menu, item);
    }
  }
}

void TZVToolBar::AddRestItem(QMenu &menu, const TItem &item) const {
  const TToolButtonKind &kind = *item.kind;
  const QString hint = m_language.Text(kind.hint);
  auto *action = new QAction(CommandIcon(kind.icon), MenuText(TLanguage::ShortHint(hint)), &menu);
  action->setObjectName(QString::fromLatin1(kind.name));
  action->setToolTip(TLanguage::ShortHint(hint));
  action->setStatusTip(TLanguage::LongHint(hint));
  action->setEnabled(item.button->isEnabled());
  menu.addAction(action);
  QMenu *dropped = DropsMenu(kind) ? m_actions.Menu(kind.menu) : nullptr;
  if (dropped != nullptr) Q_EMIT dropped->aboutToShow();
  if (dropped != nullptr && OffersAnything(*dropped)) {
    // Its items, not the menu itself, which would leave its place in the menu bar.
    auto *items = new QMenu(&menu);
    items->setToolTipsVisible(dropped->toolTipsVisible());
    items->addActions(dropped->actions());
    action->setMenu(items);
    return;
  }
  action->setCheckable(item.button->isCheckable());
  action->setChecked(item.button->isChecked());
  if (kind.command == TCommand::Count) return;
  connect(action, &QAction::triggered, m_actions[kind.command], &QAction::trigger);
}

QSize TZVToolBar::sizeHint() const {
  return {std::max(Length(), LeastWidth), ButtonHeight};
}

QSize TZVToolBar::minimumSizeHint() const {
  return {0, ButtonHeight};
}

void TZVToolBar::resizeEvent(QResizeEvent *event) {
  QWidget::resizeEvent(event);
  ShowItems();
}

void TZVToolBar::changeEvent(QEvent *event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::LayoutDirectionChange) ShowItems();
  // Other arrows beside the drop-downs.
  if (event->type() == QEvent::StyleChange) SetEntries(TToolbarEntries(m_entries));
}

// A button that rests swallows what is asked of it, the menu of the bar it stands on as well.
bool TZVToolBar::eventFilter(QObject *watched, QEvent *event) {
  const auto *button = qobject_cast<QToolButton *>(watched);
  if (event->type() == QEvent::ContextMenu && button != nullptr && !button->isEnabled()) {
    const auto *wish = static_cast<QContextMenuEvent *>(event);
    QContextMenuEvent own(wish->reason(), button->mapToParent(wish->pos()), wish->globalPos(), wish->modifiers());
    QCoreApplication::sendEvent(this, &own);
    return true;
  }
  return QWidget::eventFilter(watched, event);
}

void TZVToolBar::paintEvent(QPaintEvent *) {
  QPainter painter(this);
  for (const TItem &item : m_items) {
    if (!item.shows || item.button != nullptr || item.Right() > width()) continue;
    QStyleOption option;
    option.initFrom(this);
    option.state |= QStyle::State_Horizontal;
    option.rect = QStyle::visualRect(layoutDirection(), rect(), QRect(item.left, 0, item.width, height()));
    style()->drawPrimitive(QStyle::PE_IndicatorToolBarSeparator, &option, &painter, this);
  }
}
