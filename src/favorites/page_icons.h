#pragma once

#include <QImage>
#include <QObject>
#include <QSet>
#include <QThreadPool>

class TFaviconCache;

// The icons of pages for lists that come while somebody types: what is known is given at once, the disk is looked at on
// a thread.
class TPageIcons final : public QObject {
  Q_OBJECT

 public:
  // `cache` must outlive this object.
  explicit TPageIcons(const TFaviconCache &cache);
  // Waits for what is being read, if anything is.
  ~TPageIcons() override;

  // That of the page, else of its site; null when none is known, or not yet. Never waits.
  [[nodiscard]] QImage Of(const QString &address) const;
  // Looks at the disk for those that nothing is known of. Changed() comes when some have been found.
  void Fetch(const QStringList &addresses);

 Q_SIGNALS:
  void Changed();

 private:
  const TFaviconCache &m_cache;
  QSet<QString> m_asked;  // and not answered yet
  QThreadPool m_readers;
};
