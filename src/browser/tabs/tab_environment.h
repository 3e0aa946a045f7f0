#pragma once

#include "browser/tabs/window_budget.h"

class TEngine;
class TLanguage;
class TRegistryStore;
class TSettings;
struct TProductInfo;

// Everything that a tab is handed; it lives as long as the main window. What a page may do it asks the engine's policy.
struct TTabEnvironment {
  TEngine &engine;
  const TLanguage &language;
  TRegistryStore &store;
  TSettings &settings;
  const TProductInfo &product;
  int windowSpan = TWindowBudget::Span;  // milliseconds, see there
  bool focusPage = true;                 // A tab that becomes active gives its page the keyboard.
};
