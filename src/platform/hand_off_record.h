#pragma once

#include <QByteArray>
#include <QString>

// What a second start sends to the running instance: a record of
//
//   tag         32-bit unsigned, little-endian
//   byte count  32-bit unsigned, little-endian: length of the text in bytes + 1, or 0 when the text is empty
//   text        UTF-8, at most 1024 characters, with a terminating zero byte; absent when the text is empty
//
// One connection carries one hand-off record, which the receiver answers with the byte `Taken` when it hands the text
// out. A record of the same shape with the desktop's activation token may go before it.
namespace HandOffRecord {

inline constexpr quint32 Tag = 0xAFAF;
inline constexpr quint32 ActivationTag = 0xAFB0;
inline constexpr int MostCharacters = 1024;
inline constexpr int HeaderSize = 8;
inline constexpr quint32 MostTextBytes = MostCharacters * 4 + 1;  // with the terminating zero
inline constexpr int MostBytes = HeaderSize + int(MostTextBytes);
inline constexpr char Taken = 6;

// The first 1024 characters; one that takes two code units counts once and is never cut in half.
[[nodiscard]] QString Cut(const QString &text);
// The record for `text`, which is cut first. A text with a zero character ends before it.
[[nodiscard]] QByteArray Encode(quint32 tag, const QString &text);

enum class TState { Incomplete, Malformed, Complete };

struct TParsed {
  TState state = TState::Incomplete;
  quint32 tag = 0;
  QString text;
  int size = 0;  // bytes that the complete record takes
};

// Reads the record that `bytes` begin with; takes any bytes. Malformed are another tag than the two above, a count
// beyond the longest text, a text that does not end exactly at its count, is no UTF-8 or has more than 1024 characters.
[[nodiscard]] TParsed Parse(QByteArrayView bytes);

}  // namespace HandOffRecord
