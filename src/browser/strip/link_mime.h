#pragma once

#include <QStringList>

#include "config/named_address.h"

class QMimeData;

// The addresses that were dragged here: a list of URLs, or a text that is one URL and nothing else. Only addresses of
// pages and files count; a script is not an address. Empty when there is none.
[[nodiscard]] QStringList LinksIn(const QMimeData &data);
// The same with the title of each, where the one that they come from tells it.
[[nodiscard]] TNamedAddresses NamedLinksIn(const QMimeData &data);
