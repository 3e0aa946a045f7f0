#pragma once

#include <QList>
#include <QString>
#include <QStringList>

// How visited pages and typed addresses are found by what somebody types: every part of the query (parts are separated
// by blanks) must stand in the page's address or title, word for word, beginning at the start of a word. Upper and
// lower case, accents and punctuation do not matter. In scripts that are written without blanks every character is a
// word.
namespace VisitWords {

// The words of a text, each with one blank before it.
[[nodiscard]] QString Fold(const QString &text);
// The words of a page: those of its address, as it is read, and of its title.
[[nodiscard]] QString Of(const QString &address, const QString &title);
// The parts of a query. Empty when there is no word in it.
[[nodiscard]] QStringList Query(const QString &text);
// `words` as `Of` makes them, `query` as `Query` does.
[[nodiscard]] bool Match(const QString &words, const QStringList &query);

struct TPlace {
  qsizetype start = 0;
  qsizetype length = 0;
  bool operator==(const TPlace &) const = default;
};
// Where the parts of `query` stand in `text`, which has not been folded, from its start to its end; places that touch
// are one.
[[nodiscard]] QList<TPlace> Places(const QString &text, const QStringList &query);

}  // namespace VisitWords
