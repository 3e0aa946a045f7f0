#include "search/suggestion_list.h"

#include <algorithm>
#include <QAccessible>
#include <QApplication>
#include <QLineEdit>
#include <QScreen>
#include <QStandardItemModel>

#include "favorites/page_icons.h"
#include "search/suggestion_delegate.h"
#include "ui/shown_address.h"

namespace {

constexpr int AddressRole = Qt::UserRole + 1;
constexpr int IconSize = 16;
constexpr int PageStep = 5;

}  // namespace

TSuggestionList::TSuggestionList(QWidget *below, QLineEdit *edit, const QString &accessibleName)
    : QListView(below),
      m_below(below),
      m_edit(edit),
      m_model(new QStandardItemModel(this)),
      m_delegate(new TSuggestionDelegate(this)),
      m_plainIcon(QStringLiteral(":/icons/page.svg")) {
  setWindowFlags(Qt::ToolTip | Qt::FramelessWindowHint);
  setAttribute(Qt::WA_ShowWithoutActivating);
  setFocusPolicy(Qt::NoFocus);
  setAccessibleName(accessibleName);
  setModel(m_model);
  setItemDelegate(m_delegate);
  setUniformItemSizes(true);
  setIconSize(QSize(IconSize, IconSize));
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setMouseTracking(true);
  connect(this, &QAbstractItemView::clicked, this,
          [this](const QModelIndex &index) { Q_EMIT Clicked(index.data(AddressRole).toString()); });
  hide();
}

void TSuggestionList::SetIcons(TPageIcons *icons) {
  if (m_icons == icons) return;
  if (m_icons) m_icons->disconnect(this);
  m_icons = icons;
  if (icons != nullptr) connect(icons, &TPageIcons::Changed, this, &TSuggestionList::ShowIcons);
}

void TSuggestionList::Offer(const QList<TSuggestion> &suggestions, const QStringList &query) {
  m_model->clear();
  m_delegate->SetQuery(query);
  QStringList addresses;
  for (const TSuggestion &suggestion : suggestions) {
    const QString shown = ShownAddress(suggestion.address);
    const QString title = suggestion.title.simplified();
    auto *item = new QStandardItem(shown);
    item->setEditable(false);
    item->setData(suggestion.address, AddressRole);
    item->setData(title, TSuggestionDelegate::TitleRole);
    item->setData(title.isEmpty() ? shown : title + QLatin1String(", ") + shown, Qt::AccessibleTextRole);
    m_model->appendRow(item);
    addresses.append(suggestion.address);
  }
  if (suggestions.isEmpty()) {
    hide();
    return;
  }
  ShowIcons();
  Place();
  show();
  if (m_icons) m_icons->Fetch(addresses);
}

void TSuggestionList::ShowIcons() {
  for (int row = 0; row < m_model->rowCount(); ++row) {
    QStandardItem *item = m_model->item(row);
    const QImage icon = m_icons ? m_icons->Of(item->data(AddressRole).toString()) : QImage();
    item->setIcon(icon.isNull() ? m_plainIcon : QIcon(QPixmap::fromImage(icon)));
  }
}

void TSuggestionList::Place() {
  const int height = sizeHintForRow(0) * m_model->rowCount() + 2 * frameWidth();
  const QPoint corner = m_below->mapToGlobal(QPoint(0, m_below->height()));
  const QRect screen = m_below->screen()->availableGeometry();
  const bool fitsBelow = corner.y() + height <= screen.bottom() + 1;
  const int above = corner.y() - m_below->height() - height;
  setGeometry(corner.x(), fitsBelow || above < screen.top() ? corner.y() : above, m_below->width(),
              std::min(height, screen.height()));
}

void TSuggestionList::Move(bool down, bool page) {
  // One place more than there are rows: the place of what was typed.
  const int places = m_model->rowCount() + 1;
  const int last = places - 1;
  const int now = currentIndex().isValid() ? currentIndex().row() : last;
  int next = 0;
  if (page && now != last) {
    next = std::clamp(now + (down ? PageStep : -PageStep), 0, last - 1);
  } else {
    next = (now + (down ? 1 : places - 1)) % places;
  }
  const QModelIndex index = next == last ? QModelIndex() : m_model->index(next, 0);
  setCurrentIndex(index);
  if (!index.isValid()) clearSelection();
  TellChosen();
}

// The keyboard stays with the text box, whose text alone would be heard: the address, and not whose it is.
void TSuggestionList::TellChosen() {
  if (!currentIndex().isValid() || !QAccessible::isActive()) return;
  QAccessibleEvent event(this, QAccessible::Focus);
  event.setChild(currentIndex().row());
  QAccessible::updateAccessibility(&event);
}

QString TSuggestionList::Chosen() const {
  return isVisible() && currentIndex().isValid() ? currentIndex().data(AddressRole).toString() : QString();
}

void TSuggestionList::RemoveChosen() {
  if (Chosen().isEmpty()) return;
  m_model->removeRow(currentIndex().row());
  setCurrentIndex({});
  clearSelection();
  m_model->rowCount() == 0 ? hide() : Place();
}

void TSuggestionList::showEvent(QShowEvent *event) {
  qApp->installEventFilter(this);
  QListView::showEvent(event);
}

void TSuggestionList::hideEvent(QHideEvent *event) {
  qApp->removeEventFilter(this);
  QListView::hideEvent(event);
}

// What shows that the user has turned elsewhere closes the list.
bool TSuggestionList::eventFilter(QObject *watched, QEvent *event) {
  switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::Wheel: {
      const auto *widget = qobject_cast<QWidget *>(watched);
      if (widget != nullptr && widget->window() != this && widget != m_edit) hide();
      break;
    }
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::WindowDeactivate:
      if (watched == m_below->window()) hide();
      break;
    case QEvent::FocusOut:
      if (watched == m_edit || watched == m_below) hide();
      break;
    default:
      break;
  }
  return QListView::eventFilter(watched, event);
}
