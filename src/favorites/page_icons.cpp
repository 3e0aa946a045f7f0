#include "favorites/page_icons.h"

#include <algorithm>

#include "favorites/favicon_cache.h"

TPageIcons::TPageIcons(const TFaviconCache &cache) : m_cache(cache) {
  m_readers.setMaxThreadCount(1);
}

TPageIcons::~TPageIcons() {
  m_readers.clear();
  m_readers.waitForDone();
}

QImage TPageIcons::Of(const QString &address) const {
  return m_cache.Known(address).value_or(QImage());
}

void TPageIcons::Fetch(const QStringList &addresses) {
  QStringList wanted;
  for (const QString &address : addresses) {
    if (!m_asked.contains(address) && !m_cache.Known(address)) wanted.append(address);
  }
  if (wanted.isEmpty()) return;
  for (const QString &address : std::as_const(wanted)) m_asked.insert(address);
  m_readers.start([this, wanted, folder = m_cache.Place(), clearings = m_cache.Clearings()] {
    QList<TFaviconCache::TFile> files;
    for (const QString &address : wanted) files.append(TFaviconCache::Read(folder, address));
    QMetaObject::invokeMethod(
        this,
        [this, wanted, files, clearings] {
          for (const QString &address : wanted) m_asked.remove(address);
          m_cache.Learn(files, clearings);
          const bool found = std::ranges::any_of(files, [](const auto &file) { return !file.image.isNull(); });
          if (found) Q_EMIT Changed();
        },
        Qt::QueuedConnection);
  });
}
