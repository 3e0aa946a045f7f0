#include "favorites/favorites_order.h"

#include <cerrno>

#include "platform/folder_entries.h"
#include "platform/native_path.h"

namespace {

constexpr qint64 LargestFile = 4 * 1024 * 1024;
constexpr QByteArrayView ByteOrderMark("\xEF\xBB\xBF");

QString PathIn(const QString &folder) {
  return folder + u'/' + QLatin1String(FavoritesOrder::FileName);
}

QString Line(const QString &name) {
  QString line;
  for (qsizetype i = 0; i < name.size(); ++i) {
    const QChar unit = name.at(i);
    // What stands for a byte that is no UTF-8, see NativePath.
    const bool isByte = unit.isLowSurrogate() && (i == 0 || !name.at(i - 1).isHighSurrogate());
    if (isByte || unit == u'%' || unit < u' ' || unit == QChar(0x7F) || unit == QChar::ByteOrderMark) {
      line += QString::fromLatin1(NativePath::ToBytes(unit).toPercentEncoding());
    } else {
      line += unit;
    }
  }
  return line;
}

}  // namespace

std::optional<QStringList> FavoritesOrder::Read(const QString &folder) {
  const std::optional<QByteArray> bytes = FolderEntries::Read(PathIn(folder), LargestFile + 1);
  if (!bytes || bytes->size() > LargestFile) return std::nullopt;
  return NamesIn(*bytes);
}

bool FavoritesOrder::Write(const QString &folder, const std::optional<QStringList> &names) {
  const QString path = PathIn(folder);
  if (names) return FolderEntries::Replace(path, Bytes(*names)) == 0;
  const int code = FolderEntries::Remove(path);
  return code == 0 || code == ENOENT;
}

QStringList FavoritesOrder::NamesIn(QByteArrayView bytes) {
  if (bytes.startsWith(ByteOrderMark)) bytes = bytes.sliced(ByteOrderMark.size());
  QStringList names;
  while (!bytes.isEmpty()) {
    const qsizetype end = bytes.indexOf('\n');
    QByteArrayView line = end < 0 ? bytes : bytes.first(end);
    bytes = end < 0 ? QByteArrayView() : bytes.sliced(end + 1);
    if (line.endsWith('\r')) line.chop(1);
    if (!line.isEmpty()) names.append(NativePath::ToText(QByteArray::fromPercentEncoding(line.toByteArray())));
  }
  return names;
}

QByteArray FavoritesOrder::Bytes(const QStringList &names) {
  QByteArray bytes;
  for (const QString &name : names) bytes += Line(name).toUtf8() + '\n';
  return bytes;
}
