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

TQuickSearch TQuickSearch::Of(const QString &text, const QStringList &lines) {
  const qsizetype blank = text.indexOf(u' ');
  if (blank < 0) return {};
  TQuickSearch found{.keyword = text.left(blank)};
  // A line's name ends at its first "=", so that a keyword which holds one itself never matches.
  const auto line = std::ranges::find_if(lines, [&](const QString &candidate) {
    const qsizetype equals = candidate.indexOf(u'=');
    return equals == found.keyword.size() && candidate.startsWith(found.keyword, Qt::CaseInsensitive);
  });
  if (line != lines.end()) found.format = line->mid(found.keyword.size() + 1);
  if (found.format.isEmpty()) return {};
  found.address = QuickSearchFormat::Fill(found.format, text.mid(blank + 1), found.fault);
  found.kind = found.fault == QuickSearchFormat::TFault::None ? TKind::Address : TKind::BadFormat;
  return found;
}
