#pragma once

#include <optional>
#include <QByteArray>
#include <QCache>
#include <QImage>
#include <QList>
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
  // smaller. What HasSite refuses and a null image do nothing. Writes only what has changed; false when nothing has.
  bool Put(const QString &address, const QImage &icon);
  // That of the page, else that of its site, else null. Looks at the disk once for each address.
  [[nodiscard]] QImage Find(const QString &address) const;
  // The same from memory alone; nothing where the disk would have to be looked at.
  [[nodiscard]] std::optional<QImage> Known(const QString &address) const;

  struct TFile {
    QByteArray key;
    QImage image;
  };
  // What Find would read of the folder, for a thread of its own.
  [[nodiscard]] static QList<TFile> Read(const QString &folder, const QString &address);
  // Keeps in memory what was read so, where nothing newer is known. `clearings` is what Clearings() was before.
  void Learn(const QList<TFile> &files, int clearings) const;
  [[nodiscard]] int Clearings() const { return m_clearings; }
  [[nodiscard]] const QString &Place() const { return m_folder; }

  // Forgets that of the page, on the disk too; its site's stays.
  void Forget(const QString &address);
  // Forgets all of them, on the disk too.
  void Clear();

 private:
  [[nodiscard]] QImage Load(const QByteArray &key) const;
  void Store(const QByteArray &key, const QImage &icon);
  void DropOldest();
  [[nodiscard]] static QImage ReadFile(const QString &path);
  [[nodiscard]] static QString PathOf(const QString &folder, const QByteArray &key);

  QString m_folder;
  mutable QCache<QByteArray, QImage> m_images{1024};  // also null ones, for what is not on the disk
  int m_clearings = 0;
  int m_files = -1;  // on the disk; not counted yet
};
