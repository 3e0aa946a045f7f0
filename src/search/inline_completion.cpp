#include "search/inline_completion.h"

#include <algorithm>

namespace {

constexpr QLatin1String Scheme("http://");

std::optional<qsizetype> FirstThatBegins(const QString &start, const QStringList &entries) {
  const auto found =
      std::ranges::find_if(entries, [&](const QString &entry) { return entry.startsWith(start, Qt::CaseInsensitive); });
  if (found == entries.end()) return std::nullopt;
  return found - entries.begin();
}

}  // namespace

std::optional<TInlineCompletion> TInlineCompletion::Of(const QString &typed, const QStringList &entries) {
  if (const auto entry = FirstThatBegins(typed, entries)) return TInlineCompletion{*entry, entries.at(*entry)};
  if (typed.size() < Scheme.size() && Scheme.startsWith(typed)) return std::nullopt;
  if (const auto entry = FirstThatBegins(Scheme + typed, entries)) {
    return TInlineCompletion{*entry, entries.at(*entry).sliced(Scheme.size())};
  }
  return std::nullopt;
}
