#pragma once

#include "browser/engine/policy.h"

class TEngine;
class TPopupBlocker;

// What the program's modules answer to pages; it holds for every page of `engine` for as long as it lives.
class TBrowsingPolicy final : public TPolicy {
 public:
  // Both must live longer.
  TBrowsingPolicy(TEngine &engine, TPopupBlocker &popups);
  ~TBrowsingPolicy() override;

  [[nodiscard]] bool IsPopup(const QString &address) override;

 private:
  TEngine &m_engine;
  TPopupBlocker &m_popups;
};
