#pragma once

#include <cstdio>
#include <cstdlib>
#include <QByteArray>
#include <QString>
#include <QStringDecoder>

// What a fuzzer claims of its target. Ends the program when it does not hold, in optimised builds as well, so that the
// input is kept as a finding.
#define REQUIRE(claim)                                                         \
  do {                                                                         \
    if (!(claim)) {                                                            \
      std::fprintf(stderr, "%s:%d: not so: %s\n", __FILE__, __LINE__, #claim); \
      std::abort();                                                            \
    }                                                                          \
  } while (false)

namespace Fuzz {

// Between the parts of an input. Printable seeds stay readable, and the mutator finds single bytes easily.
inline constexpr char Part = '\x1E';
inline constexpr char Field = '\x1F';

// The text in `bytes`, every character of it: QString::fromUtf8 drops a byte-order mark in front.
inline QString Text(QByteArrayView bytes) {
  QStringDecoder decoder(QStringDecoder::Utf8,
                         QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
  return decoder(bytes);
}

// An input without a copy of it, so that reading past its end is seen.
inline QByteArray Input(const unsigned char *data, size_t size) {
  return QByteArray::fromRawData(reinterpret_cast<const char *>(data), qsizetype(size));
}

}  // namespace Fuzz
