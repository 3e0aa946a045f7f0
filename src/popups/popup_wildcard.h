#pragma once

#include <QStringView>

// Whether `text` fits `pattern`: "*" stands for any run of characters, "?" for exactly one, every other character for
// itself, upper and lower case apart. One oddity is meant: a pattern that ends in two or more stars wants at least one
// more character there, so "**" does not fit the empty text. Never backtracks: the time is in proportion to the text,
// and for a part between two stars that holds "?", to the text times that part.
[[nodiscard]] bool MatchWildcard(QStringView text, QStringView pattern);
