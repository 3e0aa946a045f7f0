#pragma once

#include <QDate>
#include <QString>

// What the update server answers: lines of KEY=value, of which the first with a key counts. The server may be anything
// (a portal that wants a sign-in, say), so that nothing but this is made of what it sends.
struct TVersionAnswer {
  static constexpr qsizetype Longest = 64 * 1024;   // characters that are read; a line that goes beyond is not
  static constexpr qsizetype LongestVersion = 100;  // characters; the middle of longer ones is left out
  static constexpr qsizetype LongestAddress = 2048;

  bool isCounted = false;  // "PONG" is exactly "TRUE"
  QString version;         // "VERSION", as one line of plain text
  QString address;  // "VERURL"; empty unless it is an http or https address with a host and without a user's name
  int id = 0;       // "VERID"; 0 when it is no decimal number, or one that is too large

  [[nodiscard]] static TVersionAnswer Read(const QString &text);

  friend bool operator==(const TVersionAnswer &, const TVersionAnswer &) = default;
};

// What it is asked.
namespace VersionRequest {

// Whole days since the 30th of December 1899, as LastPong has them.
[[nodiscard]] int DayNumber(const QDate &day);
// With the question mark in front. `lastPong` may be any number.
[[nodiscard]] QString Query(bool isNew, int lastPong, const QDate &today);

}  // namespace VersionRequest
