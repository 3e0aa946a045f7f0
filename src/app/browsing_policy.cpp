#include "app/browsing_policy.h"

#include "browser/engine/engine.h"
#include "config/user_agent_token.h"
#include "popups/popup_blocker.h"
#include "search/quick_search.h"
#include "search/search_lists.h"

TBrowsingPolicy::TBrowsingPolicy(TEngine &engine, TPopupBlocker &popups, const TSearchLists &searches)
    : m_engine(engine), m_popups(popups), m_searches(searches) {
  m_engine.SetPolicy(this);
}

TBrowsingPolicy::~TBrowsingPolicy() {
  m_engine.SetPolicy(nullptr);
}

bool TBrowsingPolicy::IsPopup(const QString &address) {
  return m_popups.IsPopupBlocked(address);
}

TWordSearch TBrowsingPolicy::SearchFor(const QString &words) const {
  for (const TNamedAddress &search : m_searches.QuickSearches()) {
    const TQuickSearch found = TQuickSearch::Of(search.name + u' ' + words.trimmed(), {search});
    if (found.kind == TQuickSearch::TKind::Address) return {search.name, found.address};
  }
  return {};
}

QString TBrowsingPolicy::UserAgentToken() const {
  return ::UserAgentToken::Registered(m_engine.Store());
}
