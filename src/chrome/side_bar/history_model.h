#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <QAbstractItemModel>
#include <QHash>
#include <QIcon>
#include <vector>

#include "history/history_reader.h"

class THistoryThread;
class TLanguage;

// The history as a tree of days, sites and pages, or as one list of pages. Only what is looked at is read, piece by
// piece and on a thread; what is there keeps its place when it is read again.
class THistoryModel final : public QAbstractItemModel {
  Q_OBJECT

 public:
  enum class TOrder { ByDay, LastVisit, MostVisited };
  // The picture of a page; asked once for each that shows, until ForgetIcons.
  using TPageIcon = std::function<QIcon(const QString &address)>;
  // So many pages are read at once.
  static constexpr int PieceOfPages = 300;

  // All must outlive this object. Nothing is read before SetOrder.
  THistoryModel(const TLanguage &language, THistoryStore &history, TPageIcon icon, QObject *parent = nullptr);
  ~THistoryModel() override;

  // Drops what is there and begins anew.
  void SetOrder(TOrder order);
  [[nodiscard]] TOrder Order() const { return m_order; }
  // Reads what is there once more.
  void Refresh();
  // Reads the next pages behind those that are there, where there are more.
  void ReadOn(const QModelIndex &parent);
  // There may be other pictures by now.
  void ForgetIcons();
  // Nothing is being read.
  [[nodiscard]] bool IsAtRest() const { return m_reading.isEmpty(); }

  // The page of a leaf; nothing for a day, a site, or no index.
  [[nodiscard]] std::optional<TVisitedPage> PageAt(const QModelIndex &index) const;
  // The pages below a day or a site.
  [[nodiscard]] THistorySpan SpanAt(const QModelIndex &index) const;

  [[nodiscard]] QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
  [[nodiscard]] QModelIndex parent(const QModelIndex &child) const override;
  [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override;
  [[nodiscard]] bool hasChildren(const QModelIndex &parent = {}) const override;
  [[nodiscard]] bool canFetchMore(const QModelIndex &parent) const override;
  void fetchMore(const QModelIndex &parent) override;
  [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;

 Q_SIGNALS:
  // What was asked for has come, or could not be read.
  void Read();

 private:
  // What a node is made of; the key tells it from the others of its parent.
  struct TItem {
    enum class TKind { Root, Period, Site, Page };
    TKind kind = TKind::Root;
    QString key{};
    THistoryPeriod period{};  // of all but the root, in the tree
    TVisitedPage page{};
  };
  struct TNode {
    TItem item;
    TNode *parent = nullptr;
    int row = 0;
    std::vector<std::unique_ptr<TNode>> children{};
    bool isRead = false;   // at least the beginning of it
    bool isWhole = false;  // there is nothing more to read
    quint64 reading = 0;   // number of what was asked for, 0 when nothing was
    mutable QIcon icon{};
  };
  using TItems = std::optional<QList<TItem>>;

  [[nodiscard]] TNode *NodeAt(const QModelIndex &index) const;
  [[nodiscard]] QModelIndex IndexOf(const TNode &node) const;
  [[nodiscard]] THistorySpan SpanOf(const TNode &node) const;
  [[nodiscard]] QString TextOf(const TNode &node) const;
  [[nodiscard]] QString PeriodText(const THistoryPeriod &period) const;
  [[nodiscard]] static TItem PageItem(const TVisitedPage &page);

  void Ask(TNode &node, bool isAnew);
  void Take(quint64 number, const TItems &items, int limit, bool isAnew);
  void Merge(TNode &parent, const QList<TItem> &items);
  void Insert(TNode &parent, int row, const QList<TItem> &items);
  void RemoveRows(TNode &parent, int first, int last);
  void Forget(const TNode &node);
  static void Renumber(TNode &parent, int from);

  const TLanguage &m_language;
  THistoryStore &m_history;
  const TPageIcon m_icon;
  TOrder m_order = TOrder::ByDay;
  std::unique_ptr<TNode> m_root;
  QHash<quint64, TNode *> m_reading;
  quint64 m_lastNumber = 0;
  std::unique_ptr<THistoryThread> m_thread;
};
