#pragma once

#include <QtGui/qaccessible_base.h>
#include <memory>
#include <QHash>
#include <QIcon>
#include <QString>
#include <vector>

class QWidget;

// What the strip knows of one page.
struct TTab {
  explicit TTab(QWidget *ownPage) : page(ownPage) {}
  ~TTab();
  Q_DISABLE_COPY_MOVE(TTab)

  QWidget *const page;  // only a key once the page is being destroyed
  bool visible = true;
  QString caption;  // as given, "&&" for an ampersand
  QString text;     // as drawn
  QString hint;
  int image = -1;
  QIcon icon;

  // The text cut to a width, kept because a strip is painted far more often than its texts change.
  QString elided;
  int elidedWidth = -1;

  QAccessible::Id accessibleId = 0;  // 0 until a screen reader has asked for this tab

 private:
  friend class TTabList;
  int m_position = 0;  // right only if the list has this tab there
  int m_ordinal = 0;   // how many visible tabs come before it
};

// The tabs in their order. A position counts all of them, an ordinal the visible ones. Numbers are worked out when they
// are asked for, from the first one that changed: adding at the end numbers one tab however many there are.
class TTabList final {
 public:
  TTabList();
  ~TTabList();

  TTab *Insert(int position, QWidget *page, bool visible);
  [[nodiscard]] std::unique_ptr<TTab> Take(TTab *tab);  // not the active one
  void Move(int from, int to);
  void SetVisible(TTab *tab, bool visible);
  void Clear();

  [[nodiscard]] int Count() const { return static_cast<int>(m_tabs.size()); }
  [[nodiscard]] int VisibleCount() const { return m_visibleCount; }
  [[nodiscard]] TTab *Find(const QObject *page) const { return m_byPage.value(page, nullptr); }
  [[nodiscard]] TTab *At(int position) const;        // nullptr when out of range
  [[nodiscard]] TTab *VisibleAt(int ordinal) const;  // nullptr when out of range
  [[nodiscard]] int Position(const TTab *tab) const;
  [[nodiscard]] int Ordinal(const TTab *tab) const;  // -1 for a hidden tab
  // The next visible tab, else the previous one, else nullptr: who takes over when this one goes.
  [[nodiscard]] TTab *Neighbour(const TTab *tab) const;
  // The tab whose page is on screen; nullptr when none is.
  [[nodiscard]] TTab *Active() const { return m_active; }
  void SetActive(TTab *tab) { m_active = tab; }

 private:
  void Number() const;
  void ForgetNumbersFrom(int position);

  std::vector<std::unique_ptr<TTab>> m_tabs;
  QHash<const QObject *, TTab *> m_byPage;
  TTab *m_active = nullptr;
  int m_visibleCount = 0;
  mutable std::vector<TTab *> m_visible;
  mutable int m_numbered = 0;  // this many tabs from the front have their numbers
};
