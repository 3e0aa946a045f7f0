#include "search/suggestion_list.h"

#include <algorithm>
#include <QApplication>
#include <QHeaderView>
#include <QLineEdit>
#include <QScreen>
#include <QStandardItemModel>

#include "search/row_delegate.h"
#include "ui/shown_address.h"

namespace {

constexpr int AddressRole = Qt::UserRole + 1;
constexpr double AddressShare = 0.6;  // of the width; the rest is the title's
constexpr float TitleOpacity = 0.65F;
constexpr int PageStep = 5;

QStandardItem *MakeItem(const QString &text) {
  auto *item = new QStandardItem(text);
  item->setEditable(false);
  return item;
}

}  // namespace

TSuggestionList::TSuggestionList(QWidget *below, QLineEdit *edit, const QString &accessibleName)
    : QTreeView(below), m_below(below), m_edit(edit), m_model(new QStandardItemModel(this)) {
  setWindowFlags(Qt::ToolTip | Qt::FramelessWindowHint);
  setAttribute(Qt::WA_ShowWithoutActivating);
  setFocusPolicy(Qt::NoFocus);
  setAccessibleName(accessibleName);
  setModel(m_model);
  setItemDelegate(new TRowDelegate(this));
  setHeaderHidden(true);
  setRootIsDecorated(false);
  setUniformRowHeights(true);
  setAllColumnsShowFocus(true);
  setSelectionBehavior(QAbstractItemView::SelectRows);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setTextElideMode(Qt::ElideRight);
  setMouseTracking(true);
  header()->setStretchLastSection(true);
  header()->setMinimumSectionSize(0);
  connect(this, &QAbstractItemView::clicked, this,
          [this](const QModelIndex &index) { Q_EMIT Clicked(index.siblingAtColumn(0).data(AddressRole).toString()); });
  hide();
}

void TSuggestionList::Offer(const QList<TSuggestion> &suggestions) {
  m_model->clear();
  for (const TSuggestion &suggestion : suggestions) {
    auto *address = MakeItem(ShownAddress(suggestion.address));
    address->setData(suggestion.address, AddressRole);
    auto *title = MakeItem(suggestion.title.simplified());
    QColor quiet = palette().color(QPalette::Text);
    quiet.setAlphaF(TitleOpacity);
    title->setForeground(quiet);
    m_model->appendRow({address, title});
  }
  if (suggestions.isEmpty()) {
    hide();
    return;
  }
  Place();
  show();
}

void TSuggestionList::Place() {
  const int height = sizeHintForRow(0) * m_model->rowCount() + 2 * frameWidth();
  const QPoint corner = m_below->mapToGlobal(QPoint(0, m_below->height()));
  const QRect screen = m_below->screen()->availableGeometry();
  const bool fitsBelow = corner.y() + height <= screen.bottom() + 1;
  const int above = corner.y() - m_below->height() - height;
  setGeometry(corner.x(), fitsBelow || above < screen.top() ? corner.y() : above, m_below->width(),
              std::min(height, screen.height()));
  setColumnWidth(0, static_cast<int>(m_below->width() * AddressShare));
}

QString TSuggestionList::Move(bool down, bool page) {
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
  return Chosen();
}

QString TSuggestionList::Chosen() const {
  return isVisible() && currentIndex().isValid() ? currentIndex().siblingAtColumn(0).data(AddressRole).toString()
                                                 : QString();
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
  QTreeView::showEvent(event);
}

void TSuggestionList::hideEvent(QHideEvent *event) {
  qApp->removeEventFilter(this);
  QTreeView::hideEvent(event);
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
  return QTreeView::eventFilter(watched, event);
}
