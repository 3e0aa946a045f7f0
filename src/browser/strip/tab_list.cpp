#include "browser/strip/tab_list.h"

#include <algorithm>
#include <QAccessible>
#include <QWidget>

TTab::~TTab() {
  if (accessibleId != 0) QAccessible::deleteAccessibleInterface(accessibleId);
}

TTabList::TTabList() = default;
TTabList::~TTabList() = default;

TTab *TTabList::Insert(int position, QWidget *page, bool visible) {
  position = std::clamp(position, 0, Count());
  auto owned = std::make_unique<TTab>(page);
  TTab *tab = owned.get();
  tab->visible = visible;
  tab->m_position = position;
  m_tabs.insert(m_tabs.begin() + position, std::move(owned));
  m_byPage.insert(page, tab);
  if (visible) ++m_visibleCount;
  ForgetNumbersFrom(position);
  return tab;
}

std::unique_ptr<TTab> TTabList::Take(TTab *tab) {
  const int position = Position(tab);
  std::unique_ptr<TTab> owned = std::move(m_tabs[position]);
  m_tabs.erase(m_tabs.begin() + position);
  m_byPage.remove(tab->page);
  if (tab->visible) --m_visibleCount;
  ForgetNumbersFrom(position);
  return owned;
}

void TTabList::Move(int from, int to) {
  const auto first = m_tabs.begin();
  if (from < to) {
    std::rotate(first + from, first + from + 1, first + to + 1);
  } else {
    std::rotate(first + to, first + from, first + from + 1);
  }
  ForgetNumbersFrom(std::min(from, to));
}

void TTabList::SetVisible(TTab *tab, bool visible) {
  if (tab->visible == visible) return;
  ForgetNumbersFrom(Position(tab));
  tab->visible = visible;
  m_visibleCount += visible ? 1 : -1;
}

void TTabList::Clear() {
  m_active = nullptr;
  m_visibleCount = 0;
  m_numbered = 0;
  m_visible.clear();
  m_byPage.clear();
  m_tabs.clear();
}

TTab *TTabList::At(int position) const {
  return position >= 0 && position < Count() ? m_tabs[position].get() : nullptr;
}

TTab *TTabList::VisibleAt(int ordinal) const {
  if (ordinal < 0 || ordinal >= m_visibleCount) return nullptr;
  Number();
  return m_visible[ordinal];
}

int TTabList::Position(const TTab *tab) const {
  if (At(tab->m_position) != tab) Number();
  return tab->m_position;
}

int TTabList::Ordinal(const TTab *tab) const {
  if (!tab->visible) return -1;
  if (Position(tab) >= m_numbered) Number();
  return tab->m_ordinal;
}

TTab *TTabList::Neighbour(const TTab *tab) const {
  Number();
  const int after = tab->visible ? tab->m_ordinal + 1 : tab->m_ordinal;
  TTab *next = VisibleAt(after);
  return next ? next : VisibleAt(tab->m_ordinal - 1);
}

void TTabList::ForgetNumbersFrom(int position) {
  m_numbered = std::min(m_numbered, position);
}

void TTabList::Number() const {
  if (m_numbered == Count()) return;
  int ordinal = 0;
  if (m_numbered > 0) {
    const TTab &last = *m_tabs[m_numbered - 1];
    ordinal = last.m_ordinal + (last.visible ? 1 : 0);
  }
  m_visible.resize(ordinal);
  for (; m_numbered < Count(); ++m_numbered) {
    TTab *tab = m_tabs[m_numbered].get();
    tab->m_position = m_numbered;
    tab->m_ordinal = static_cast<int>(m_visible.size());
    if (tab->visible) m_visible.push_back(tab);
  }
}
