#pragma once

#include <optional>
#include <QStringList>

// How the address bar completes what is being typed from the list of typed addresses.
struct TInlineCompletion {
  qsizetype entry = 0;  // the entry's place in the list
  QString text;         // what the box shows; all behind the typed part is to be selected

  // The first entry that begins with `typed`, regardless of case; failing that, the first one that does so behind
  // "http://", shown without it. While `typed` is shorter than "http://" and is itself its beginning, only a direct
  // match counts.
  [[nodiscard]] static std::optional<TInlineCompletion> Of(const QString &typed, const QStringList &entries);
};
