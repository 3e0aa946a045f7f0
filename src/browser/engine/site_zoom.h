#pragma once

#include <optional>
#include <QHash>
#include <QObject>

class QUrl;
class TRegistryStore;

// How large the user wants the pages of each site, as far as he has zoomed them.
//
// It is a value for each site in the registry store, below RegistryKey::SiteZoom: the name is the site's host, or
// "file:" for the disk, the data is the zoom in percent. A site at its plain size has none. What other windows have
// stored holds from the next page on. What is no number between the first and the last step is passed over.
class TSiteZoom final : public QObject {
  Q_OBJECT

 public:
  // Without a store, which must live longer, nothing outlives this object.
  explicit TSiteZoom(TRegistryStore *store) : m_store(store) {}

  // Under which name the site of the page is known; empty where it has none.
  [[nodiscard]] static QString SiteOf(const QUrl &page);
  [[nodiscard]] std::optional<int> PercentOf(const QString &site) const;
  // std::nullopt forgets it.
  void Set(const QString &site, std::optional<int> percent);

 Q_SIGNALS:
  void Changed(const QString &site);

 private:
  TRegistryStore *m_store;
  QHash<QString, int> m_unstored;  // without a store, or refused by it
};
