#include "platform/native_path.h"

#include <algorithm>

#include "store/utf8_text.h"

namespace {

constexpr char16_t FirstByte = 0xDC80;  // stands for the byte 0x80
constexpr char16_t LastByte = 0xDCFF;

bool StandsForByte(const QString &text, qsizetype place) {
  const char16_t unit = text.at(place).unicode();
  return unit >= FirstByte && unit <= LastByte && (place == 0 || !text.at(place - 1).isHighSurrogate());
}

// How many bytes a character of UTF-8 has that begins so.
qsizetype Length(uchar first) {
  if (first < 0x80) return 1;
  if (first < 0xE0) return 2;
  return first < 0xF0 ? 3 : 4;
}

}  // namespace

QString NativePath::ToText(QByteArrayView bytes) {
  if (bytes.isValidUtf8()) return TextOfUtf8(bytes);
  QString text;
  for (qsizetype i = 0; i < bytes.size();) {
    const auto first = uchar(bytes[i]);
    const QByteArrayView character = bytes.sliced(i, std::min(Length(first), bytes.size() - i));
    if (character.isValidUtf8()) {
      text += TextOfUtf8(character);
      i += character.size();
    } else {
      text += QChar(char16_t(FirstByte + first - 0x80));
      ++i;
    }
  }
  return text;
}

QByteArray NativePath::ToBytes(const QString &text) {
  QByteArray bytes;
  qsizetype start = 0;
  for (qsizetype i = 0; i < text.size(); ++i) {
    if (!StandsForByte(text, i)) continue;
    bytes += QStringView(text).sliced(start, i - start).toUtf8();
    bytes += char(text.at(i).unicode() - FirstByte + 0x80);
    start = i + 1;
  }
  return start == 0 ? text.toUtf8() : bytes + QStringView(text).sliced(start).toUtf8();
}

bool NativePath::IsPlain(const QString &text) {
  for (qsizetype i = 0; i < text.size(); ++i) {
    if (StandsForByte(text, i)) return false;
  }
  return true;
}

QUrl NativePath::ToUrl(const QString &path) {
  if (IsPlain(path)) return QUrl::fromLocalFile(path);
  return QUrl::fromEncoded("file://" + ToBytes(path).toPercentEncoding("/"));
}

QString NativePath::Shown(QString text) {
  for (qsizetype i = 0; i < text.size(); ++i) {
    if (StandsForByte(text, i)) text[i] = QChar::ReplacementCharacter;
  }
  return text;
}
