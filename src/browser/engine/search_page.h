#pragma once

#include <initializer_list>
#include <optional>
#include <QString>

// The program's own page for the search panel, which is shown where the user has no page of his: one field, whose words
// go to the quick search that is asked where none is named.
namespace SearchPage {

inline constexpr const char *Address = "zarvela:search";
// Where its link to the list of quick searches leads. There is no page; the scheme is that of addresses for the panel,
// since no page may lead to those of the program's own.
inline constexpr const char *ListAddress = "def:searches";

// The page that the panel begins with: the first of these addresses that is not empty, else the program's own.
[[nodiscard]] QString First(std::initializer_list<QString> addresses);

// The words that were entered in its field, if that is where the address comes from.
[[nodiscard]] std::optional<QString> WordsOf(const QString &address);

}  // namespace SearchPage
