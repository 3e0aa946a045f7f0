#pragma once

#include <QString>

// The caption of a tab, in the menu convention ("&&" stands for one ampersand).
//
// A sticky name is taken as it is. Otherwise the title is cut: to `limit` characters and "..." when 0 < limit < length;
// else to the fixed 50 characters and "..." when it is longer than that. The fixed cut is the second test on purpose: a
// title of 60 characters with a limit of 80 is cut to 50, one of 100 characters with the same limit to 80.
// "about:blank" becomes `blankText`.
[[nodiscard]] QString TabCaption(const QString &title, const QString &stickyName, int limit, const QString &blankText);
