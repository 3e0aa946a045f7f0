#include "chrome/favorites/page_shortcut.h"

#include <algorithm>
#include <QMimeData>
#include <QtEndian>
#include <QUrl>

#include "favorites/favorites_edit.h"
#include "favorites/shortcut_file.h"

namespace {

// One group descriptor of the shell's clipboard: the number of files, 32 bits, and a record for each. All numbers are
// little-endian. What a record does not use is zero.
constexpr qsizetype RecordSize = 332;  // bytes
constexpr qsizetype FlagsPlace = 0;    // in the record
constexpr qsizetype SizePlace = 68;
constexpr qsizetype NamePlace = 72;
constexpr qsizetype NameSize = 260;      // with the zero at its end
constexpr quint32 HasSize = 0x00000040;  // a flag: the size of the file is told

void PutNumber(QByteArray &bytes, qsizetype place, quint32 number) {
  qToLittleEndian(number, bytes.data() + place);
}

QByteArray DescriptorOf(const QByteArray &name, qsizetype size) {
  constexpr qsizetype Record = sizeof(quint32);
  QByteArray bytes(Record + RecordSize, '\0');
  PutNumber(bytes, 0, 1);
  PutNumber(bytes, Record + FlagsPlace, HasSize);
  PutNumber(bytes, Record + SizePlace, quint32(size));
  std::ranges::copy(name.left(NameSize - 1), bytes.begin() + Record + NamePlace);
  return bytes;
}

}  // namespace

QMimeData *PageShortcut::DataOf(const QString &title, const QString &address) {
  const QByteArray contents = ShortcutFile::Bytes(address);
  const QString name = FavoritesEdit::NameFor(title, address) + QLatin1String(".url");
  auto *data = new QMimeData;
  data->setText(address);
  data->setUrls({QUrl(address)});
  data->setData(QStringLiteral("UniformResourceLocator"), address.toUtf8());
  data->setData(QStringLiteral("FileGroupDescriptor"), DescriptorOf(name.toUtf8(), contents.size()));
  data->setData(QStringLiteral("FileContents"), contents);
  AddTitled(*data, title, address);
  return data;
}

void PageShortcut::AddTitled(QMimeData &data, const QString &title, const QString &address) {
  const QString titled = address + u'\n' + title.simplified();
  data.setData(QStringLiteral("text/x-moz-url"),
               QByteArray(reinterpret_cast<const char *>(titled.utf16()), titled.size() * qsizetype(sizeof(char16_t))));
}
