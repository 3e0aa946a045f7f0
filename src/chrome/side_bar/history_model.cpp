#include "chrome/side_bar/history_model.h"

#include <algorithm>
#include <QLocale>
#include <QSet>

#include "config/language.h"
#include "history/history_thread.h"
#include "ui/shown_address.h"
#include "ui/shown_text.h"

namespace {

constexpr qsizetype LongestText = 300;  // characters of a line
// A longer list begins anew instead of having each of its pages compared with what was read.
constexpr size_t MostCompared = 20000;
constexpr int DaysOfWeek = 7;

}  // namespace

THistoryModel::THistoryModel(const TLanguage &language, THistoryStore &history, TPageIcon icon, QObject *parent)
    : QAbstractItemModel(parent),
      m_language(language),
      m_history(history),
      m_icon(std::move(icon)),
      m_root(std::make_unique<TNode>()),
      m_thread(std::make_unique<THistoryThread>(history.FilePath())) {}

THistoryModel::~THistoryModel() {
  m_thread.reset();
}

void THistoryModel::SetOrder(TOrder order) {
  beginResetModel();
  m_order = order;
  m_reading.clear();
  m_root = std::make_unique<TNode>();
  endResetModel();
  Ask(*m_root, false);
}

void THistoryModel::Refresh() {
  const std::function<void(TNode &)> askAll = [&](TNode &node) {
    if (!node.isRead && &node != m_root.get()) return;
    Ask(node, node.isRead);
    for (const auto &child : node.children) askAll(*child);
  };
  askAll(*m_root);
}

void THistoryModel::ForgetIcons() {
  const std::function<void(TNode &)> forget = [&](TNode &node) {
    node.icon = {};
    for (const auto &child : node.children) forget(*child);
    if (node.children.empty() || node.children.front()->item.kind != TItem::TKind::Page) return;
    Q_EMIT dataChanged(IndexOf(*node.children.front()), IndexOf(*node.children.back()), {Qt::DecorationRole});
  };
  forget(*m_root);
}

std::optional<TVisitedPage> THistoryModel::PageAt(const QModelIndex &index) const {
  const TNode &node = *NodeAt(index);
  return node.item.kind == TItem::TKind::Page ? std::optional(node.item.page) : std::nullopt;
}

THistorySpan THistoryModel::SpanAt(const QModelIndex &index) const {
  return SpanOf(*NodeAt(index));
}

THistoryModel::TNode *THistoryModel::NodeAt(const QModelIndex &index) const {
  return index.isValid() ? static_cast<TNode *>(index.internalPointer()) : m_root.get();
}

QModelIndex THistoryModel::IndexOf(const TNode &node) const {
  return node.parent == nullptr ? QModelIndex() : createIndex(node.row, 0, &node);
}

THistorySpan THistoryModel::SpanOf(const TNode &node) const {
  if (node.item.kind == TItem::TKind::Root) return {};
  const QString site = node.item.kind == TItem::TKind::Site ? node.item.key : QString();
  THistoryPeriod period = node.item.period;
  // What was today when it was read may be yesterday by now, and has an end then.
  if (!period.end.isValid() && period.first < QDate::currentDate()) period.end = period.first.addDays(1);
  return {.from = period.From(), .until = period.Until(), .site = site};
}

QModelIndex THistoryModel::index(int row, int column, const QModelIndex &parent) const {
  const TNode &node = *NodeAt(parent);
  if (column != 0 || row < 0 || size_t(row) >= node.children.size()) return {};
  return createIndex(row, 0, node.children[size_t(row)].get());
}

QModelIndex THistoryModel::parent(const QModelIndex &child) const {
  return child.isValid() ? IndexOf(*NodeAt(child)->parent) : QModelIndex();
}

int THistoryModel::rowCount(const QModelIndex &parent) const {
  return int(NodeAt(parent)->children.size());
}

int THistoryModel::columnCount(const QModelIndex &) const {
  return 1;
}

bool THistoryModel::hasChildren(const QModelIndex &parent) const {
  const TNode &node = *NodeAt(parent);
  return node.item.kind != TItem::TKind::Page && (!node.isRead || !node.children.empty());
}

bool THistoryModel::canFetchMore(const QModelIndex &parent) const {
  const TNode &node = *NodeAt(parent);
  // A view asks at each layout, and would read on to the end. The root is read by SetOrder.
  return node.item.kind != TItem::TKind::Page && node.parent != nullptr && !node.isRead && node.reading == 0;
}

void THistoryModel::fetchMore(const QModelIndex &parent) {
  if (canFetchMore(parent)) Ask(*NodeAt(parent), false);
}

void THistoryModel::ReadOn(const QModelIndex &parent) {
  TNode &node = *NodeAt(parent);
  if (node.isRead && !node.isWhole && node.reading == 0) Ask(node, false);
}

QVariant THistoryModel::data(const QModelIndex &index, int role) const {
  if (!index.isValid()) return {};
  const TNode &node = *NodeAt(index);
  const bool isPage = node.item.kind == TItem::TKind::Page;
  switch (role) {
    case Qt::DisplayRole:
      return TextOf(node);
    case Qt::ToolTipRole:
      return isPage ? PlainTip(node.item.page.title + u'\n' + ShownAddress(node.item.page.address)) : QVariant();
    case Qt::AccessibleDescriptionRole:
      return isPage ? Shortened(ShownAddress(node.item.page.address), LongestText) : QVariant();
    case Qt::DecorationRole:
      if (isPage && node.icon.isNull() && m_icon) node.icon = m_icon(node.item.page.address);
      return node.icon;
    default:
      return {};
  }
}

QString THistoryModel::TextOf(const TNode &node) const {
  switch (node.item.kind) {
    case TItem::TKind::Period:
      return PeriodText(node.item.period);
    case TItem::TKind::Site: {
      const QString &site = node.item.key;
      if (site == QLatin1String("file:")) return m_language.Text("HISTORY", "LocalFiles");
      const qsizetype port = site.lastIndexOf(u':');
      return port > 0 ? ShownHost(site.left(port)) + site.mid(port) : ShownHost(site);
    }
    case TItem::TKind::Page: {
      const QString title = OneLine(Shortened(node.item.page.title, LongestText)).trimmed();
      return title.isEmpty() ? Shortened(ShownAddress(node.item.page.address), LongestText) : title;
    }
    case TItem::TKind::Root:
      break;
  }
  return {};
}

QString THistoryModel::PeriodText(const THistoryPeriod &period) const {
  const QLocale locale(m_language.LocaleName());
  const QDate today = QDate::currentDate();
  switch (period.kind) {
    case THistoryPeriod::TKind::Day:
      if (period.first == today) return m_language.Text("HISTORY", "Today");
      if (period.first.addDays(1) == today) return m_language.Text("HISTORY", "Yesterday");
      return locale.standaloneDayName(period.first.dayOfWeek());
    case THistoryPeriod::TKind::Week: {
      const QDate ofToday = THistoryPeriod::WeekOf(today, locale.firstDayOfWeek());
      if (period.first.addDays(DaysOfWeek) == ofToday) return m_language.Text("HISTORY", "LastWeek");
      return m_language.Text("HISTORY", "WeekOf").arg(locale.toString(period.first, QLocale::ShortFormat));
    }
    case THistoryPeriod::TKind::Month:
      break;
  }
  return locale.toString(period.first, m_language.Text("HISTORY", "MonthFormat"));
}

THistoryModel::TItem THistoryModel::PageItem(const TVisitedPage &page) {
  return {.kind = TItem::TKind::Page, .key = page.address, .page = page};
}

// Reads the next piece of a node, or, `isAnew`, as much as it has once more.
void THistoryModel::Ask(TNode &node, bool isAnew) {
  m_reading.remove(node.reading);
  const quint64 number = node.reading = ++m_lastNumber;
  m_reading.insert(number, &node);
  const bool isLong = node.children.size() > MostCompared;
  const int count = int(node.children.size());
  // The longer a list is the more each change of it costs.
  const int limit = std::max(isAnew ? (isLong ? 0 : count) : count / 4, PieceOfPages);
  std::optional<TVisitedPage> after;
  if (!isAnew && !node.children.empty()) after = node.children.back()->item.page;
  const TItem::TKind kind = node.item.kind;
  m_thread->Do([=, this, period = node.item.period, span = SpanOf(node), order = m_order,
                firstDay = QLocale(m_language.LocaleName()).firstDayOfWeek()](THistoryReader &reader) {
    TItems items;
    if (kind == TItem::TKind::Root && order == TOrder::ByDay) {
      if (const auto periods = reader.Periods(QDate::currentDate(), firstDay)) {
        items.emplace();
        for (const THistoryPeriod &one : *periods) {
          items->append({TItem::TKind::Period, one.first.toString(Qt::ISODate), one, {}});
        }
      }
    } else if (kind == TItem::TKind::Period) {
      if (const auto sites = reader.Sites(span)) {
        items.emplace();
        for (const QString &site : *sites) items->append({TItem::TKind::Site, site, period, {}});
      }
    } else {
      const auto by = order == TOrder::MostVisited ? THistoryOrder::MostVisited : THistoryOrder::LastVisit;
      if (const auto pages = reader.Pages(span, by, limit, after)) {
        items.emplace();
        for (const TVisitedPage &page : *pages) items->append(PageItem(page));
      }
    }
    QMetaObject::invokeMethod(
        this, [=, this] { Take(number, items, limit, isAnew); }, Qt::QueuedConnection);
  });
}

void THistoryModel::Take(quint64 number, const TItems &items, int limit, bool isAnew) {
  TNode *node = m_reading.take(number);
  if (node == nullptr) return;
  node->reading = 0;
  if (items) {
    const bool isPaged =
        node->item.kind == TItem::TKind::Site || (node->item.kind == TItem::TKind::Root && m_order != TOrder::ByDay);
    node->isRead = true;
    node->isWhole = !isPaged || items->size() < limit;
    if (isAnew || !isPaged) {
      Merge(*node, *items);
    } else {
      // A page that was visited meanwhile stands further up, and comes with what is read anew.
      Insert(*node, int(node->children.size()), *items);
    }
  } else {
    // The store knows what to do about a file that cannot be read.
    (void)m_history.OldestLastVisit();
  }
  Q_EMIT Read();
}

void THistoryModel::Merge(TNode &parent, const QList<TItem> &items) {
  if (parent.children.size() > MostCompared) RemoveRows(parent, 0, int(parent.children.size()) - 1);
  QSet<QString> wanted;
  for (const TItem &item : items) wanted.insert(item.key);
  for (int last = int(parent.children.size()) - 1; last >= 0; --last) {
    const auto isGone = [&](int row) { return !wanted.contains(parent.children[size_t(row)]->item.key); };
    if (!isGone(last)) continue;
    int first = last;
    while (first > 0 && isGone(first - 1)) --first;
    RemoveRows(parent, first, last);
    last = first;
  }
  QSet<QString> known;
  for (const auto &child : parent.children) known.insert(child->item.key);
  for (int row = 0; row < int(items.size()); ++row) {
    if (!known.contains(items.at(row).key)) {
      QList<TItem> added;
      while (row + added.size() < items.size() && !known.contains(items.at(row + added.size()).key)) {
        added.append(items.at(row + added.size()));
      }
      Insert(parent, row, added);
      row += int(added.size()) - 1;
      continue;
    }
    auto &children = parent.children;
    const auto found = std::find_if(children.begin() + row, children.end(),
                                    [&](const auto &child) { return child->item.key == items.at(row).key; });
    // A key that comes twice has its place already.
    if (found == children.end()) continue;
    const int from = int(found - children.begin());
    if (from != row && beginMoveRows(IndexOf(parent), from, from, IndexOf(parent), row)) {
      std::rotate(children.begin() + row, found, found + 1);
      Renumber(parent, row);
      endMoveRows();
    }
    children[size_t(row)]->item = items.at(row);
    children[size_t(row)]->icon = {};
  }
  if (!parent.children.empty()) {
    Q_EMIT dataChanged(createIndex(0, 0, parent.children.front().get()),
                       createIndex(int(parent.children.size()) - 1, 0, parent.children.back().get()));
  }
}

void THistoryModel::Insert(TNode &parent, int row, const QList<TItem> &items) {
  if (items.isEmpty()) return;
  beginInsertRows(IndexOf(parent), row, row + int(items.size()) - 1);
  std::vector<std::unique_ptr<TNode>> nodes;
  for (const TItem &item : items) {
    nodes.push_back(std::make_unique<TNode>());
    nodes.back()->item = item;
    nodes.back()->parent = &parent;
  }
  parent.children.insert(parent.children.begin() + row, std::make_move_iterator(nodes.begin()),
                         std::make_move_iterator(nodes.end()));
  Renumber(parent, row);
  endInsertRows();
}

void THistoryModel::RemoveRows(TNode &parent, int first, int last) {
  beginRemoveRows(IndexOf(parent), first, last);
  for (int row = first; row <= last; ++row) Forget(*parent.children[size_t(row)]);
  parent.children.erase(parent.children.begin() + first, parent.children.begin() + last + 1);
  Renumber(parent, first);
  endRemoveRows();
}

// What was asked for it and its children finds nobody any more.
void THistoryModel::Forget(const TNode &node) {
  m_reading.remove(node.reading);
  for (const auto &child : node.children) Forget(*child);
}

void THistoryModel::Renumber(TNode &parent, int from) {
  for (size_t row = size_t(from); row < parent.children.size(); ++row) parent.children[row]->row = int(row);
}
