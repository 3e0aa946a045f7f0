#include "browser/downloads/kept_downloads.h"

#include <algorithm>
#include <array>
#include <QJsonDocument>
#include <QJsonObject>
#include <utility>

#include "config/registry_paths.h"
#include "store/registry_store.h"

namespace {

using TState = TKeptDownload::TState;

constexpr TRegistryHive Hive = TRegistryHive::CurrentUser;
const QString Key = QString::fromLatin1(RegistryKey::Downloads);

constexpr std::array<std::pair<TState, const char *>, 5> States{{{TState::UnderWay, "running"},
                                                                 {TState::Finished, "finished"},
                                                                 {TState::Cancelled, "cancelled"},
                                                                 {TState::Failed, "failed"},
                                                                 {TState::NotStarted, "waiting"}}};

}  // namespace

TKeptDownloads::TKeptDownloads(TRegistryStore &store, int window, std::function<bool(int)> isRunning)
    : m_store(store), m_window(window), m_isRunning(std::move(isRunning)) {}

QList<TKeptDownload> TKeptDownloads::Read() const {
  QList<TKeptDownload> downloads;
  for (const TRegistryValue &value : m_store.Values(Hive, Key)) {
    const QJsonObject data = QJsonDocument::fromJson(value.data.toUtf8()).object();
    const QString state = data.value(u"state").toString();
    const auto *known =
        std::ranges::find_if(States, [&](const auto &one) { return state == QLatin1String(one.second); });
    if (known == States.end()) continue;
    const int window = data.value(u"window").toInt();
    if (known->first == TState::UnderWay && window != m_window && m_isRunning(window)) continue;
    downloads.prepend({.id = value.name,
                       .address = data.value(u"address").toString(),
                       .path = data.value(u"path").toString(),
                       .part = data.value(u"part").toString(),
                       .when = QDateTime::fromString(data.value(u"when").toString(), Qt::ISODate),
                       .state = known->first,
                       .failure = data.value(u"failure").toString(),
                       .received = std::max(qint64(0), data.value(u"received").toInteger()),
                       .isPage = data.value(u"page").toBool()});
  }
  return downloads;
}

void TKeptDownloads::Write(const TKeptDownload &download) {
  const auto *state = std::ranges::find(States, download.state, &std::pair<TState, const char *>::first);
  QJsonObject data{{"address", download.address},
                   {"path", download.path},
                   {"when", download.when.toString(Qt::ISODate)},
                   {"state", QLatin1String(state->second)},
                   {"received", download.received}};
  if (download.state == TState::UnderWay) data.insert("window", m_window);
  const bool mayBeUnplaced = download.state == TState::UnderWay || download.state == TState::Failed;
  if (mayBeUnplaced && !download.part.isEmpty()) data.insert("part", download.part);
  if (!download.failure.isEmpty()) data.insert("failure", download.failure);
  if (download.isPage) data.insert("page", true);
  m_store.Write(Hive, Key, download.id, QString::fromUtf8(QJsonDocument(data).toJson(QJsonDocument::Compact)));
  if (m_store.Values(Hive, Key).size() <= Most) return;
  m_store.EditKey(
      Hive, Key, [](const QList<TRegistryValue> &values) { return values.size() > Most ? values.last(Most) : values; });
}

void TKeptDownloads::Remove(const QString &id) {
  m_store.DeleteValue(Hive, Key, id);
}
