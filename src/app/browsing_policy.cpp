#include "app/browsing_policy.h"

#include "browser/engine/engine.h"
#include "popups/popup_blocker.h"

TBrowsingPolicy::TBrowsingPolicy(TEngine &engine, TPopupBlocker &popups) : m_engine(engine), m_popups(popups) {
  m_engine.SetPolicy(this);
}

TBrowsingPolicy::~TBrowsingPolicy() {
  m_engine.SetPolicy(nullptr);
}

bool TBrowsingPolicy::IsPopup(const QString &address) {
  return m_popups.IsPopupBlocked(address);
}
