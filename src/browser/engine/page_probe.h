#pragma once

#include <functional>

#include "browser/page/page_properties.h"

class TEnginePage;
class TLanguage;

// Collects what is known of a page: from the engine at once, from the page itself by a script in a world of its own
// that the page cannot tamper with. `done` is called once; when the page goes away first, with what was known until
// then.
void ProbePage(TEnginePage *page, const TLanguage &language, const std::function<void(const TPageProperties &)> &done);
