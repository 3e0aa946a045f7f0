// Input: a typed text, and after each part separator a line "keyword=format" of the list of quick searches.

#include <QList>

#include "require.h"
#include "search/quick_search.h"

using QuickSearchFormat::Fill;
using QuickSearchFormat::TFault;

namespace {

struct TFilled {
  TFault fault = TFault::None;
  QString address;
};

// A plain reading of the format: what stands between the percent signs decides.
TFilled Expected(const QString &format, const QString &query) {
  const QStringList pieces = format.split(u'%');
  TFilled filled{.address = pieces.first()};
  int places = 0;
  for (qsizetype i = 1; i < pieces.size(); ++i) {
    const QString &piece = pieces.at(i);
    if (piece.isEmpty() && i + 1 < pieces.size()) {
      filled.address += u'%' + pieces.at(++i);
    } else if (!piece.startsWith(u's')) {
      return {TFault::BadPlace, {}};
    } else if (++places > 1) {
      return {TFault::SeveralPlaces, {}};
    } else {
      filled.address += query + piece.mid(1);
    }
  }
  return filled;
}

void RequireFill(const QString &format, const QString &query) {
  // Whatever it held before, the fault is told anew.
  for (TFault fault : {TFault::None, TFault::BadPlace}) {
    const QString address = Fill(format, query, fault);
    const TFilled expected = Expected(format, query);
    REQUIRE(fault == expected.fault && address == expected.address);
    REQUIRE(fault == TFault::None || address.isEmpty());
  }
}

// The format of the first search whose name is the keyword.
QString FormatOf(const QString &keyword, const TNamedAddresses &searches) {
  for (const auto &[name, format] : searches) {
    if (name.compare(keyword, Qt::CaseInsensitive) == 0) return format;
  }
  return {};
}

void RequireSearch(const QString &text, const TNamedAddresses &searches) {
  const TQuickSearch found = TQuickSearch::Of(text, searches);
  const qsizetype blank = text.indexOf(u' ');
  const QString format = blank < 0 ? QString() : FormatOf(text.left(blank), searches);
  if (format.isEmpty()) {
    REQUIRE(found.kind == TQuickSearch::TKind::None && found.address.isEmpty() && found.fault == TFault::None);
    return;
  }
  const TFilled expected = Expected(format, text.mid(blank + 1));
  REQUIRE(found.keyword == text.left(blank) && found.format == format);
  REQUIRE(found.fault == expected.fault && found.address == expected.address);
  REQUIRE((found.kind == TQuickSearch::TKind::Address) == (found.fault == TFault::None));
  REQUIRE(found.kind != TQuickSearch::TKind::None);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size) {
  const QList<QByteArray> parts = Fuzz::Input(data, size).split(Fuzz::Part);
  const QString text = Fuzz::Text(parts.first());
  TNamedAddresses searches;
  for (const QByteArray &part : parts.sliced(1)) {
    const QString line = Fuzz::Text(part);
    searches.append({line.section(u'=', 0, 0), line.section(u'=', 1)});
  }
  RequireSearch(text, searches);
  RequireFill(text, searches.value(0).address);
  for (const TNamedAddress &search : searches) RequireFill(search.address, text);
  return 0;
}
