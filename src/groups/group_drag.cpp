#include "groups/group_drag.h"

#include <QDataStream>
#include <QUrl>

#include "groups/halvex_group.h"

namespace {

const QString PagesFormat = QStringLiteral("application/x-zarvela-group-pages");
constexpr auto StreamVersion = QDataStream::Qt_6_4;
constexpr qsizetype MostPages = 5000;
// Each text has its length in front; no page of a real group comes near.
constexpr qsizetype MostBytes = 64 * 1024 * 1024;

}  // namespace

namespace GroupDrag {

void AddTo(QMimeData &data, const QList<TPage> &pages) {
  QByteArray bytes;
  QDataStream stream(&bytes, QIODevice::WriteOnly);
  stream.setVersion(StreamVersion);
  QList<QUrl> urls;
  QStringList addresses;
  for (const TPage &page : pages) {
    stream << page.file << qint32(page.line.position) << page.line.line;
    const QString address = GroupPages::PageOf(page.line.line).address;
    addresses.append(address);
    urls.append(QUrl(address));
  }
  data.setData(PagesFormat, bytes);
  if (!data.hasUrls()) data.setUrls(urls);
  if (!data.hasText()) data.setText(addresses.join(u'\n'));
}

QString LineOf(const QString &name, const QString &address, bool isLocked) {
  THalvexGroup group;
  group.AddEntry(name, address, isLocked);
  const TNamedAddress page = group.At(0);
  return page.name + u'=' + page.address;
}

bool HasPages(const QMimeData &data) {
  return data.hasFormat(PagesFormat);
}

QList<TPage> PagesIn(const QMimeData &data) {
  const QByteArray bytes = data.data(PagesFormat);
  QList<TPage> pages;
  if (bytes.size() > MostBytes) return pages;
  QDataStream stream(bytes);
  stream.setVersion(StreamVersion);
  while (!stream.atEnd() && pages.size() < MostPages) {
    TPage page;
    qint32 position = -1;
    stream >> page.file >> position >> page.line.line;
    page.line.position = position;
    if (stream.status() != QDataStream::Ok) break;
    if (page.line.line.contains(u'=') && (page.file.isEmpty() || IsHalvexGroupFile(page.file))) pages.append(page);
  }
  return pages;
}

}  // namespace GroupDrag
