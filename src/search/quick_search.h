#pragma once

#include <QString>

#include "config/named_address.h"

// Quick searches: a keyword, a blank and a query typed into the address bar become an address.

// An address format: "%s" is the place of the query, "%%" a percent sign. It holds at most one place, and no other use
// of the percent sign.
namespace QuickSearchFormat {

enum class TFault { None, SeveralPlaces, BadPlace };

// The format with the query in its place, taken as it is: nothing is trimmed or encoded. Empty on a fault.
[[nodiscard]] QString Fill(const QString &format, const QString &query, TFault &fault);

}  // namespace QuickSearchFormat

// What a typed text is by a list of quick searches.
struct TQuickSearch {
  enum class TKind {
    None,       // The text is an address of its own.
    Address,    // `address` is to be opened.
    BadFormat,  // The keyword's format has a fault: nothing is to be opened.
  };

  TKind kind = TKind::None;
  QString keyword{};
  QString format{};
  QString address{};
  QuickSearchFormat::TFault fault = QuickSearchFormat::TFault::None;

  // `searches` are keywords with their formats. The keyword is what stands before the first blank of `text`, upper and
  // lower case being one; the query is all that stands behind it. A text without a blank, an unknown keyword, or one
  // with an empty format is no quick search.
  [[nodiscard]] static TQuickSearch Of(const QString &text, const TNamedAddresses &searches);
};
