#pragma once

#include <QStringList>

class QMimeData;

// The addresses that were dragged here: a list of URLs, or a text that is one URL and nothing else. Only addresses of
// pages and files count; a script is not an address. Empty when there is none.
//
// At most `most` of them: by default as many as may become tabs, since a whole folder dropped by mistake must not open
// a thousand of them.
inline constexpr qsizetype MostDroppedTabs = 50;
[[nodiscard]] QStringList LinksIn(const QMimeData &data, qsizetype most = MostDroppedTabs);
