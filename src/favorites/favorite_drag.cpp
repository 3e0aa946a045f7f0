#include "favorites/favorite_drag.h"

#include <QMimeData>
#include <QUrl>

#include "platform/native_path.h"

namespace {

const QString PathsFormat = QStringLiteral("application/x-zarvela-favorites");  // as bytes, each with a zero behind it
// What file managers agree on.
const QString CutFormat = QStringLiteral("application/x-kde-cutselection");

}  // namespace

namespace FavoriteDrag {

QMimeData *DataOf(const QStringList &paths) {
  auto *data = new QMimeData;
  QByteArray bytes;
  QList<QUrl> urls;
  for (const QString &path : paths) {
    bytes += NativePath::ToBytes(path) + '\0';
    if (NativePath::IsPlain(path)) urls.append(QUrl::fromLocalFile(path));
  }
  data->setData(PathsFormat, bytes);
  data->setUrls(urls);
  return data;
}

void SetCut(QMimeData &data) {
  data.setData(CutFormat, "1");
}

bool AreFavorites(const QMimeData &data) {
  return data.hasFormat(PathsFormat);
}

bool HasPaths(const QMimeData &data) {
  return !PathsIn(data).isEmpty();
}

QStringList PathsIn(const QMimeData &data) {
  QStringList paths;
  if (data.hasFormat(PathsFormat)) {
    for (const QByteArray &path : data.data(PathsFormat).split('\0')) {
      if (!path.isEmpty()) paths.append(NativePath::ToText(path));
    }
    return paths;
  }
  for (const QUrl &url : data.urls()) {
    if (url.isLocalFile()) paths.append(url.toLocalFile());
  }
  return paths;
}

bool IsCut(const QMimeData &data) {
  return data.data(CutFormat).startsWith('1');
}

}  // namespace FavoriteDrag
