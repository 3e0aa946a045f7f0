#pragma once

#include <QStringList>

class QMimeData;

// The addresses that were dragged here: a list of URLs, or a text that is one URL and nothing else. Only addresses of
// pages and files count; a script is not an address. Empty when there is none.
[[nodiscard]] QStringList LinksIn(const QMimeData &data);
