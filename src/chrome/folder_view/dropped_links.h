#pragma once

#include <QList>
#include <QString>

class QMimeData;

// An address that was dragged here from elsewhere, with its title where that was told.
struct TDroppedLink {
  QString address{};
  QString title{};

  bool operator==(const TDroppedLink &) const = default;
};

// The addresses in what was dragged, each once: those of LinksIn, and the title that goes with each, from
// the list of addresses and titles ("text/x-moz-url", UTF-16, a line for each in turn) or from the links in a piece of
// HTML. At most 1000.
[[nodiscard]] QList<TDroppedLink> DroppedLinks(const QMimeData &data);
// Whether there are any; looks at no titles, since it is asked while something is dragged.
[[nodiscard]] bool HasDroppedLinks(const QMimeData &data);
