#pragma once

#include <QtGui/qaccessible_base.h>
#include <memory>
#include <QHash>
#include <QIcon>
#include <QString>
#include <vector>
#include "browser/strip/tab_layout.h"

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

  bool changed = false;      // since it was measured and painted last
  int wish = 0;              // the width it would like to have
  TTabLayout::TPlace place;  // where it lay when the strip was laid out last

  QAccessible::Id accessibleId = 0;  // 0 until a screen reader has asked for this tab
};

// The tabs in their order. A position counts all of them, an ordinal the visible ones; both are counted when they are
// asked for.
class TTabList final {
 public:
  TTabList();
  ~TTabList();

  TTab *Insert(int position, QWidget *page, bool visible);
  [[nodiscard]] std::unique_ptr<TTab> Take(TTab *tab);  // not the active one
  void Move(int from, int to);
  void Clear();

  [[nodiscard]] int Count() const { return static_cast<int>(m_tabs.size()); }
  [[nodiscard]] int VisibleCount() const { return VisibleBefore(Count()); }
  [[nodiscard]] int VisibleBefore(int position) const;
  [[nodiscard]] TTab *Find(const QObject *page) const { return m_byPage.value(page, nullptr); }
  [[nodiscard]] TTab *At(int position) const;         // nullptr when out of range
  [[nodiscard]] TTab *VisibleAt(int ordinal) const;   // nullptr when out of range
  [[nodiscard]] int Position(const TTab *tab) const;  // of one that is in the list
  [[nodiscard]] int Ordinal(const TTab *tab) const;   // -1 for a hidden tab
  // The next visible tab, else the previous one, else nullptr: who takes over when this one goes.
  [[nodiscard]] TTab *Neighbour(const TTab *tab) const;
  // The tab whose page is on screen; nullptr when none is.
  [[nodiscard]] TTab *Active() const { return m_active; }
  void SetActive(TTab *tab) { m_active = tab; }

 private:
  std::vector<std::unique_ptr<TTab>> m_tabs;
  QHash<const QObject *, TTab *> m_byPage;
  TTab *m_active = nullptr;
};
