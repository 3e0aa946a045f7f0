#include "favorites/favicon_cache.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QImageReader>
#include <QUrl>

#include "platform/folder_entries.h"
#include "platform/program_folders.h"
#include "platform/web_address.h"
#include "store/private_folder.h"

namespace {

constexpr qint64 LargestFile = 64 * 1024;
// So many go at once when there are too many.
constexpr int DroppedAtOnce = TFaviconCache::MostFiles / 4;
const QString NamePattern = QStringLiteral("*.png");
const QString PartPattern = QStringLiteral("*.part");  // of a write that was broken off

QByteArray Hash(const QString &text) {
  return QCryptographicHash::hash(text.toUtf8(), QCryptographicHash::Sha1).toHex();
}

// Of scheme, host and port.
QByteArray SiteKey(const QUrl &url) {
  const int port = url.port(url.scheme() == QLatin1String("https") ? 443 : 80);
  return 's' + Hash(url.scheme() + QLatin1String("://") + url.host() + u':' + QString::number(port));
}

QByteArray PageKey(const QUrl &url) {
  return 'p' + Hash(url.toString(QUrl::FullyEncoded | QUrl::RemoveFragment));
}

bool IsFirstPage(const QUrl &url) {
  return (url.path().isEmpty() || url.path() == QLatin1String("/")) && !url.hasQuery();
}

QImage Small(const QImage &icon) {
  const bool isSmall = icon.width() <= TFaviconCache::Size && icon.height() <= TFaviconCache::Size;
  QImage small =
      isSmall ? icon
              : icon.scaled(TFaviconCache::Size, TFaviconCache::Size, Qt::KeepAspectRatio, Qt::SmoothTransformation);
  small.setDevicePixelRatio(1);
  return small.convertToFormat(QImage::Format_ARGB32);
}

}  // namespace

QString TFaviconCache::Folder() {
  return ProgramFolders::Cache() + QLatin1String("/favicons");
}

bool TFaviconCache::HasSite(const QString &address) {
  const QUrl url(address);
  return WebAddress::Is(url) && !url.host().isEmpty();
}

bool TFaviconCache::Put(const QString &address, const QImage &icon) {
  if (icon.isNull() || !HasSite(address)) return false;
  const QUrl url(address);
  const QImage small = Small(icon);
  const QImage site = Load(SiteKey(url));
  const bool isForSite = site.isNull() || (IsFirstPage(url) && site != small);
  if (isForSite) Store(SiteKey(url), small);
  const QImage page = Load(PageKey(url));
  // One that is as its site's needs no file of its own, unless it has one that says something else.
  const bool isForPage = page.isNull() ? !site.isNull() && site != small && !IsFirstPage(url) : page != small;
  if (isForPage) Store(PageKey(url), small);
  return isForSite || isForPage;
}

QImage TFaviconCache::Find(const QString &address) const {
  if (!HasSite(address)) return {};
  const QUrl url(address);
  const QImage page = Load(PageKey(url));
  return page.isNull() ? Load(SiteKey(url)) : page;
}

void TFaviconCache::Forget(const QString &address) {
  const QByteArray key = PageKey(QUrl(address));
  m_images.remove(key);
  ++m_clearings;  // what is being read now is not to be learned
  if (QFile::remove(PathOf(m_folder, key)) && m_files > 0) --m_files;
}

void TFaviconCache::Clear() {
  ++m_clearings;
  m_images.clear();
  m_files = 0;
  QDir folder(m_folder);
  for (const QString &name : folder.entryList({NamePattern, PartPattern}, QDir::Files)) folder.remove(name);
}

QImage TFaviconCache::Load(const QByteArray &key) const {
  if (const QImage *known = m_images.object(key)) return *known;
  const QImage image = ReadFile(PathOf(m_folder, key));
  m_images.insert(key, new QImage(image));
  return image;
}

QImage TFaviconCache::ReadFile(const QString &path) {
  QImage image;
  if (auto bytes = FolderEntries::Read(path, LargestFile)) {
    QBuffer buffer(&*bytes);
    QImageReader reader(&buffer, "PNG");
    // The size stands in front: nothing is unpacked that is none of ours.
    const QSize size = reader.size();
    if (size.width() <= Size && size.height() <= Size) image = reader.read().convertToFormat(QImage::Format_ARGB32);
  }
  return image;
}

std::optional<QImage> TFaviconCache::Known(const QString &address) const {
  if (!HasSite(address)) return QImage();
  const QUrl url(address);
  const QImage *page = m_images.object(PageKey(url));
  if (page == nullptr) return std::nullopt;
  if (!page->isNull()) return *page;
  const QImage *site = m_images.object(SiteKey(url));
  if (site == nullptr) return std::nullopt;
  return *site;
}

QList<TFaviconCache::TFile> TFaviconCache::Read(const QString &folder, const QString &address) {
  if (!HasSite(address)) return {};
  const QUrl url(address);
  QList<TFile> files;
  for (const QByteArray &key : {PageKey(url), SiteKey(url)}) files.append({key, ReadFile(PathOf(folder, key))});
  return files;
}

void TFaviconCache::Learn(const QList<TFile> &files, int clearings) const {
  if (clearings != m_clearings) return;
  for (const TFile &file : files) {
    if (!m_images.contains(file.key)) m_images.insert(file.key, new QImage(file.image));
  }
}

void TFaviconCache::Store(const QByteArray &key, const QImage &icon) {
  m_images.insert(key, new QImage(icon));
  if (!MakePrivateFolder(m_folder)) return;
  if (m_files < 0) m_files = int(QDir(m_folder).entryList({NamePattern}, QDir::Files).size());
  const QString path = PathOf(m_folder, key);
  const bool isNew = !QFile::exists(path);
  if (isNew && m_files >= MostFiles) DropOldest();
  QBuffer buffer;
  const QString part = path + QLatin1String(".part");
  // Not brought to the disk: what a power cut leaves of it counts as none.
  QFile::remove(part);
  if (!icon.save(&buffer, "PNG") || FolderEntries::CreateUnseen(part, buffer.data()) != 0) return;
  QFile::remove(path);
  if (QFile::rename(part, path) && isNew) ++m_files;
}

void TFaviconCache::DropOldest() {
  QDir folder(m_folder);
  const QStringList names = folder.entryList({NamePattern}, QDir::Files, QDir::Time | QDir::Reversed);
  m_files = int(names.size());
  // Others may have taken some away.
  if (m_files < MostFiles) return;
  for (const QString &name : names.first(qMin<qsizetype>(names.size(), DroppedAtOnce))) {
    if (folder.remove(name)) --m_files;
  }
}

QString TFaviconCache::PathOf(const QString &folder, const QByteArray &key) {
  return folder + u'/' + QString::fromLatin1(key) + QLatin1String(".png");
}
