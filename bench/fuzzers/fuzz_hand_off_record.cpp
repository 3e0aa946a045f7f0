// Input: the bytes that a sender wrote. They are read as a record, and also taken as the text of one, in UTF-16.

#include <cstring>

#include "platform/hand_off_record.h"
#include "require.h"

using namespace HandOffRecord;

namespace {

bool IsLone(const QString &text, qsizetype i) {
  if (text[i].isHighSurrogate()) return i + 1 == text.size() || !text[i + 1].isLowSurrogate();
  return text[i].isLowSurrogate() && (i == 0 || !text[i - 1].isHighSurrogate());
}

qsizetype Characters(const QString &text) {
  qsizetype count = 0;
  for (qsizetype i = 0; i < text.size(); ++i) {
    if (!text[i].isLowSurrogate() || IsLone(text, i)) ++count;
  }
  return count;
}

TParsed ParseFirst(QByteArrayView bytes, qsizetype size) {
  // In memory of its own, so that reading past the end is seen.
  const QByteArray copy(bytes.data(), size);
  return Parse(copy);
}

void RequireReading(QByteArrayView bytes) {
  const TParsed parsed = Parse(bytes);
  if (parsed.state != TState::Complete) {
    REQUIRE(parsed.size == 0 && parsed.text.isEmpty());
    REQUIRE(parsed.state == TState::Malformed || bytes.size() < MostBytes);
  } else {
    REQUIRE(parsed.tag == Tag || parsed.tag == ActivationTag);
    REQUIRE(parsed.size >= HeaderSize && parsed.size <= MostBytes && parsed.size <= bytes.size());
    REQUIRE(Characters(parsed.text) <= MostCharacters && !parsed.text.contains(QChar(u'\0')));
    // The same text makes the same record; but a count of one stands for an empty text, too.
    if (parsed.size != HeaderSize + 1) REQUIRE(Encode(parsed.tag, parsed.text) == bytes.first(parsed.size));
  }
  // What a sender's first bytes say holds whatever follows.
  for (const qsizetype size :
       {qsizetype(3), qsizetype(4), qsizetype(7), qsizetype(8), qsizetype(9), bytes.size() / 2, bytes.size() - 1}) {
    if (size < 0 || size >= bytes.size()) continue;
    const TParsed before = ParseFirst(bytes, size);
    if (before.state == TState::Incomplete) continue;
    REQUIRE(before.state == parsed.state && before.size == parsed.size && before.text == parsed.text);
  }
}

void RequireRoundTrip(const QString &text) {
  const QString cut = Cut(text);
  REQUIRE(text.startsWith(cut));
  REQUIRE(Characters(cut) == qMin<qsizetype>(Characters(text), MostCharacters));
  const QByteArray record = Encode(ActivationTag, text);
  REQUIRE(record.size() <= MostBytes);
  const TParsed parsed = Parse(record);
  REQUIRE(parsed.state == TState::Complete && parsed.tag == ActivationTag && parsed.size == record.size());
  REQUIRE(ParseFirst(record, record.size() - 1).state == TState::Incomplete);
  const QString sent = cut.left(cut.indexOf(QChar(u'\0')));
  REQUIRE(parsed.text.size() == sent.size());
  for (qsizetype i = 0; i < sent.size(); ++i) REQUIRE(parsed.text[i] == sent[i] || IsLone(sent, i));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size) {
  RequireReading(Fuzz::Input(data, size));
  QString text(qsizetype(size / sizeof(QChar)), Qt::Uninitialized);
  std::memcpy(text.data(), data, size_t(text.size()) * sizeof(QChar));
  RequireRoundTrip(text);
  return 0;
}
