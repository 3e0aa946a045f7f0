#pragma once

#include <QByteArray>
#include <QCache>
#include <QImage>
#include <QString>

// The small icons of sites and pages, for favorites: PNG files in a folder of their own, named by a hash of the
// address, so that the folder tells nobody where the user has been. Told by whoever has them from the engine; nothing
// is ever fetched. Files are read when they are asked for, and at most 4096 are kept: of more the oldest go.
//
// Where nothing can be written icons are kept for this run. A file that is no picture of that kind counts as none.
class TFaviconCache final {
 public:
  static constexpr int MostFiles = 4096;
  static constexpr int Size = 32;  // pixels a side at the most

  // Nothing is opened yet, nor made. For the folder see Folder().
  explicit TFaviconCache(const QString &folder = Folder()) : m_folder(folder) {}
  // "favicons" in the program's cache folder.
  [[nodiscard]] static QString Folder();

  // False for addresses that have no site: files, scripts, about: and so on.
  [[nodiscard]] static bool HasSite(const QString &address);

  // The icon of that page, and of its site where that has none yet or this is its first page. Larger ones are made
  // smaller. What HasSite refuses and a null image do nothing. Writes only what has changed.
  void Put(const QString &address, const QImage &icon);
  // That of the page, else that of its site, else null. Looks at the disk once for each address.
  [[nodiscard]] QImage Find(const QString &address) const;
  // Forgets all of them, on the disk too.
  void Clear();

 private:
  [[nodiscard]] QImage Load(const QByteArray &key) const;
  void Store(const QByteArray &key, const QImage &icon);
  void DropOldest();
  [[nodiscard]] QString PathOf(const QByteArray &key) const;

  QString m_folder;
  mutable QCache<QByteArray, QImage> m_images{1024};  // also null ones, for what is not on the disk
  int m_files = -1;                                   // on the disk; not counted yet
};
