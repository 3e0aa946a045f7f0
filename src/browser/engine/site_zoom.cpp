#include "browser/engine/site_zoom.h"

#include <QUrl>

#include "browser/engine/zoom_table.h"
#include "config/registry_paths.h"
#include "store/registry_store.h"

namespace {

constexpr TRegistryHive Hive = TRegistryHive::CurrentUser;
const QString Key = QString::fromLatin1(RegistryKey::SiteZoom);

}  // namespace

QString TSiteZoom::SiteOf(const QUrl &page) {
  return page.isLocalFile() ? QStringLiteral("file:") : page.host(QUrl::FullyEncoded).toLower();
}

std::optional<int> TSiteZoom::PercentOf(const QString &site) const {
  if (site.isEmpty()) return std::nullopt;
  const auto unstored = m_unstored.constFind(site);
  if (unstored != m_unstored.constEnd()) return unstored.value();
  if (m_store == nullptr) return std::nullopt;
  const int percent = m_store->Read(Hive, Key, site).value_or(QString()).toInt();
  return percent >= ZoomSteps.front() && percent <= ZoomSteps.back() ? std::optional(percent) : std::nullopt;
}

void TSiteZoom::Set(const QString &site, std::optional<int> percent) {
  if (site.isEmpty() || PercentOf(site) == percent) return;
  m_unstored.remove(site);
  if (!percent) {
    if (m_store != nullptr) m_store->DeleteValue(Hive, Key, site);
  } else if (m_store == nullptr || !m_store->Write(Hive, Key, site, QString::number(*percent))) {
    m_unstored.insert(site, *percent);
  }
  Q_EMIT Changed(site);
}
