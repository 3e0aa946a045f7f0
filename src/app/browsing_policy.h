#pragma once

#include "browser/engine/policy.h"

class TEngine;
class TPopupBlocker;
class TSearchLists;

// What the program's modules answer to pages; it holds for every page of `engine` for as long as it lives.
class TBrowsingPolicy final : public TPolicy {
 public:
  // All must live longer.
  TBrowsingPolicy(TEngine &engine, TPopupBlocker &popups, const TSearchLists &searches);
  ~TBrowsingPolicy() override;

  [[nodiscard]] bool IsPopup(const QString &address) override;
  // By the first of the user's quick searches, as if its keyword had been typed.
  [[nodiscard]] TWordSearch SearchFor(const QString &words) const override;
  // The program's own, while it is registered.
  [[nodiscard]] QString UserAgentToken() const override;

 private:
  TEngine &m_engine;
  TPopupBlocker &m_popups;
  const TSearchLists &m_searches;
};
