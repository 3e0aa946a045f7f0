#pragma once

#include "config/language.h"

// How well the connection to a page is protected, by the numbers that users of the browser control know.
enum class TEncryptionLevel {
  None = 0,
  Mixed = 1,    // parts came in the clear
  Unknown = 2,  // the certificate has an error that the user accepted
  Bits40 = 3,
  Bits56 = 4,
  Fortezza = 5,
  Bits128 = 6,  // secure; what the engine reports without further detail
};

// The text of a level; the lowest one has none.
inline constexpr TTextKey EncryptionTexts[] = {
    {},
    {"MAIN", "EncryptionMixed"},
    {"MAIN", "EncryptionUnknown"},
    {"MAIN", "Encryption40Bit"},
    {"MAIN", "Encryption56Bit"},
    {"MAIN", "EncryptionFortezza"},
    {"MAIN", "Encryption128Bit"},
};

// Whether the lock shows closed: all of a page of a secure address came over a connection that nobody had to excuse.
[[nodiscard]] constexpr bool IsWhole(bool isSecure, TEncryptionLevel level) {
  return isSecure && level > TEncryptionLevel::Unknown;
}

[[nodiscard]] constexpr TTextKey EncryptionText(TEncryptionLevel level) {
  return EncryptionTexts[static_cast<int>(level)];
}
