#include "services/version_exchange.h"

#include <QUrl>

#include "platform/web_address.h"
#include "ui/shown_text.h"

namespace {

constexpr const char *Build = "621A";
const QDate DayZero(1899, 12, 30);

// What stands behind the first line's KEY=; empty where there is none.
QString Value(QStringView text, QLatin1String key) {
  for (qsizetype begin = 0; begin < text.size();) {
    qsizetype end = begin;
    while (end < text.size() && text[end] != u'\n' && text[end] != u'\r') ++end;
    const QStringView line = text.sliced(begin, end - begin);
    // Compared as they stand: blanks and other cases make other keys.
    if (line.size() > key.size() && line[key.size()] == u'=' && line.startsWith(key)) {
      return line.sliced(key.size() + 1).toString();
    }
    begin = end + 1;
  }
  return {};
}

QString Version(const QString &text) {
  const QString version = OneLine(text).simplified();
  constexpr qsizetype Longest = TVersionAnswer::LongestVersion;
  return version.size() <= Longest ? version : Shortened(version, Longest - 1);
}

QString PageAddress(const QString &text) {
  if (text.size() > TVersionAnswer::LongestAddress) return {};
  const QUrl url(text, QUrl::StrictMode);
  if (!WebAddress::IsPlain(url)) return {};
  const QString address = url.toString(QUrl::FullyEncoded);
  return address.size() <= TVersionAnswer::LongestAddress ? address : QString();
}

}  // namespace

TVersionAnswer TVersionAnswer::Read(const QString &text) {
  QStringView lines(text);
  if (lines.size() > Longest) {
    // A line that is cut off would be another one.
    lines.truncate(Longest);
    while (!lines.isEmpty() && lines.back() != u'\n' && lines.back() != u'\r') lines.chop(1);
  }
  return {.isCounted = Value(lines, QLatin1String("PONG")) == QLatin1String("TRUE"),
          .version = Version(Value(lines, QLatin1String("VERSION"))),
          .address = PageAddress(Value(lines, QLatin1String("VERURL"))),
          .id = Value(lines, QLatin1String("VERID")).toInt()};
}

int VersionRequest::DayNumber(const QDate &day) {
  return int(DayZero.daysTo(day));
}

QString VersionRequest::Query(bool isNew, int lastPong, const QDate &today) {
  const QDate last = DayZero.addDays(lastPong);
  const bool isThisMonth = last.year() == today.year() && last.month() == today.month();
  return QStringLiteral("?ver=%1&new=%2&mo=%3")
      .arg(QLatin1String(Build), isNew ? QStringLiteral("1") : QStringLiteral("0"),
           isThisMonth ? QStringLiteral("0") : QStringLiteral("1"));
}
