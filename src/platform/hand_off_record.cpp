#include "platform/hand_off_record.h"

#include <algorithm>
#include <QtEndian>

#include "store/utf8_text.h"

namespace HandOffRecord {

namespace {

// A byte that goes on with a character instead of beginning one.
bool IsContinuation(char byte) {
  return (static_cast<uchar>(byte) & 0xC0) == 0x80;
}

}  // namespace

QString Cut(const QString &text) {
  qsizetype end = 0;
  for (int count = 0; count < MostCharacters && end < text.size(); ++count) {
    const bool isPair = text[end].isHighSurrogate() && end + 1 < text.size() && text[end + 1].isLowSurrogate();
    end += isPair ? 2 : 1;
  }
  return text.left(end);
}

QByteArray Encode(quint32 tag, const QString &text) {
  QByteArray bytes = Cut(text).toUtf8();
  bytes.truncate(qstrnlen(bytes.constData(), bytes.size()));
  const auto count = static_cast<quint32>(bytes.isEmpty() ? 0 : bytes.size() + 1);
  QByteArray record(HeaderSize, '\0');
  qToLittleEndian(tag, record.data());
  qToLittleEndian(count, record.data() + sizeof tag);
  record.append(bytes);
  if (count > 0) record.append('\0');
  return record;
}

TParsed Parse(QByteArrayView bytes) {
  TParsed malformed;
  malformed.state = TState::Malformed;
  TParsed parsed;
  if (bytes.size() < qsizetype(sizeof parsed.tag)) return parsed;
  parsed.tag = qFromLittleEndian<quint32>(bytes.data());
  if (parsed.tag != Tag && parsed.tag != ActivationTag) return malformed;
  if (bytes.size() < HeaderSize) return parsed;
  const auto count = qFromLittleEndian<quint32>(bytes.data() + sizeof parsed.tag);
  if (count > MostTextBytes) return malformed;
  const QByteArrayView data = bytes.sliced(HeaderSize).first(qMin<qsizetype>(bytes.size() - HeaderSize, count));
  // A zero anywhere but at the very end says that the count lies.
  const qsizetype zero = data.indexOf('\0');
  if (zero >= 0 && zero + 1 != qsizetype(count)) return malformed;
  if (data.size() < qsizetype(count)) return parsed;
  if (count > 0) {
    if (zero < 0) return malformed;
    const QByteArrayView text = data.chopped(1);
    if (std::ranges::count_if(text, [](char byte) { return !IsContinuation(byte); }) > MostCharacters) {
      return malformed;
    }
    if (!text.isValidUtf8()) return malformed;
    parsed.text = TextOfUtf8(text);
  }
  parsed.size = HeaderSize + int(count);
  parsed.state = TState::Complete;
  return parsed;
}

}  // namespace HandOffRecord
