#include "search/quick_search.h"

#include <algorithm>

namespace QuickSearchFormat {

QString Fill(const QString &format, const QString &query, TFault &fault) {
  fault = TFault::None;
  QString filled;
  filled.reserve(format.size() + query.size());
  bool hasPlace = false;
  for (qsizetype i = 0; i < format.size(); ++i) {
    if (format.at(i) != u'%') {
      filled += format.at(i);
      continue;
    }
    const QChar kind = ++i < format.size() ? format.at(i) : QChar();
    if (kind == u'%') {
      filled += kind;
    } else if (kind != u's') {
      fault = TFault::BadPlace;
    } else if (hasPlace) {
      fault = TFault::SeveralPlaces;
    } else {
      hasPlace = true;
      filled += query;
    }
    if (fault != TFault::None) return {};
  }
  return filled;
}

}  // namespace QuickSearchFormat

TQuickSearch TQuickSearch::Of(const QString &text, const TNamedAddresses &searches) {
  const qsizetype blank = text.indexOf(u' ');
  if (blank < 0) return {};
  TQuickSearch found{.keyword = text.left(blank)};
  const auto search = std::ranges::find_if(searches, [&](const TNamedAddress &candidate) {
    return candidate.name.compare(found.keyword, Qt::CaseInsensitive) == 0;
  });
  if (search != searches.end()) found.format = search->address;
  if (found.format.isEmpty()) return {};
  found.address = QuickSearchFormat::Fill(found.format, text.mid(blank + 1), found.fault);
  found.kind = found.fault == QuickSearchFormat::TFault::None ? TKind::Address : TKind::BadFormat;
  return found;
}
