#include "browser/tabs/tab_record.h"

#include <QDataStream>

namespace {

// Whoever changes what is written counts this up; records of another version are not read.
constexpr quint8 Version = 1;
constexpr QDataStream::Version StreamVersion = QDataStream::Qt_6_4;
// Far more than the longest history that the engine keeps; a broken length is not believed.
constexpr quint32 MostBytes = 16 << 20;

// A page may put as much as it likes into its history; beyond this it is not worth keeping, and the rest of the record
// is.
constexpr qsizetype LongestHistory = 4 << 20;

// What the length in front of compressed data says.
quint32 UnpackedSize(const QByteArray &packed) {
  quint32 size = 0;
  QDataStream(packed) >> size;
  return size;
}

}  // namespace

QString TTabRecord::ToText() const {
  QByteArray bytes;
  QDataStream stream(&bytes, QIODevice::WriteOnly);
  stream.setVersion(StreamVersion);
  stream << Version << address << title << stickyName << locked << spared
         << (history.size() <= LongestHistory ? history : QByteArray()) << keptAwake;
  return QString::fromLatin1(qCompress(bytes, 1).toBase64());
}

std::optional<TTabRecord> TTabRecord::FromText(const QString &text) {
  const auto packed = QByteArray::fromBase64Encoding(text.toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
  if (!packed || UnpackedSize(*packed) > MostBytes) return std::nullopt;
  const QByteArray bytes = qUncompress(*packed);
  QDataStream stream(bytes);
  stream.setVersion(StreamVersion);
  quint8 version = 0;
  TTabRecord record;
  stream >> version >> record.address >> record.title >> record.stickyName >> record.locked >> record.spared >>
      record.history;
  // Came later: what was written before ends here, and who reads only so much has all that he knows.
  if (!stream.atEnd()) stream >> record.keptAwake;
  if (stream.status() != QDataStream::Ok || version != Version || record.address.isEmpty()) return std::nullopt;
  return record;
}
