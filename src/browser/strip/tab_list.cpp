#include "browser/strip/tab_list.h"

#include <algorithm>
#include <QAccessible>
#include <QWidget>

namespace {
bool IsVisible(const std::unique_ptr<TTab> &tab) {
  return tab->visible;
}
}  // namespace

TTab::~TTab() {
  if (accessibleId != 0) QAccessible::deleteAccessibleInterface(accessibleId);
}

TTabList::TTabList() = default;
TTabList::~TTabList() = default;

TTab *TTabList::Insert(int position, QWidget *page, bool visible) {
  auto tab = std::make_unique<TTab>(page);
  tab->visible = visible;
  m_byPage.insert(page, tab.get());
  return m_tabs.insert(m_tabs.begin() + std::clamp(position, 0, Count()), std::move(tab))->get();
}

std::unique_ptr<TTab> TTabList::Take(TTab *tab) {
  const auto place = m_tabs.begin() + Position(tab);
  std::unique_ptr<TTab> owned = std::move(*place);
  m_tabs.erase(place);
  m_byPage.remove(tab->page);
  return owned;
}

void TTabList::Move(int from, int to) {
  const auto first = m_tabs.begin();
  if (from < to) {
    std::rotate(first + from, first + from + 1, first + to + 1);
  } else {
    std::rotate(first + to, first + from, first + from + 1);
  }
}

void TTabList::Clear() {
  m_active = nullptr;
  m_byPage.clear();
  m_tabs.clear();
}

int TTabList::VisibleBefore(int position) const {
  return static_cast<int>(std::count_if(m_tabs.begin(), m_tabs.begin() + position, IsVisible));
}

TTab *TTabList::At(int position) const {
  return position >= 0 && position < Count() ? m_tabs[position].get() : nullptr;
}

TTab *TTabList::VisibleAt(int ordinal) const {
  for (const auto &tab : m_tabs) {
    if (tab->visible && ordinal-- == 0) return tab.get();
  }
  return nullptr;
}

int TTabList::Position(const TTab *tab) const {
  return static_cast<int>(std::ranges::find(m_tabs, tab, &std::unique_ptr<TTab>::get) - m_tabs.begin());
}

int TTabList::Ordinal(const TTab *tab) const {
  return tab->visible ? VisibleBefore(Position(tab)) : -1;
}

TTab *TTabList::Neighbour(const TTab *tab) const {
  const auto here = m_tabs.begin() + Position(tab);
  if (const auto next = std::find_if(here + 1, m_tabs.end(), IsVisible); next != m_tabs.end()) return next->get();
  const auto previous = std::find_if(std::make_reverse_iterator(here), m_tabs.rend(), IsVisible);
  return previous != m_tabs.rend() ? previous->get() : nullptr;
}
