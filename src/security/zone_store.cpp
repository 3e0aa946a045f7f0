#include "security/zone_store.h"

#include <algorithm>
#include <QThread>
#include <QUuid>

#include "config/registry_paths.h"
#include "store/registry_store.h"

namespace {

constexpr auto User = TRegistryHive::CurrentUser;

const QString RevisionName = QStringLiteral("Revision");

QString ZoneMapKey() {
  return QString::fromLatin1(RegistryKey::InternetSettings) + QStringLiteral("\\ZoneMap");
}

QString MappingsKey() {
  return ZoneMapKey() + QStringLiteral("\\Domains");
}

QString ZoneKey(int zone) {
  return QString::fromLatin1(RegistryKey::InternetSettings) + QStringLiteral("\\Zones\\%1").arg(zone);
}

QString ActionName(TUrlAction action) {
  return QString::number(unsigned(action), 16).toUpper();
}

size_t IndexOf(TUrlAction action) {
  return size_t(std::ranges::find(UrlActions, action) - UrlActions.begin());
}

}  // namespace

struct TZoneStore::TState {
  QString revision;
  QList<TZoneMapping> mappings;
  TZoneMap map;
  std::array<std::array<unsigned, UrlActions.size()>, ZoneCount> policies{};
};

TZoneStore::TZoneStore(TRegistryStore &store) : m_store(store), m_thread(QThread::currentThread()) {}

TZoneStore::~TZoneStore() = default;

unsigned TZoneStore::DefaultPolicy(int zone) {
  return zone == ZoneNumber::Restricted ? Disallow : Allow;
}

void TZoneStore::Reload() {
  auto state = std::make_shared<TState>();
  // First: what is written while the rest is read is noticed at the next look.
  const quint64 seen = m_store.Revision();
  state->revision = m_store.Read(User, ZoneMapKey(), RevisionName).value_or(QString());
  const auto stored = m_store.KnownValues(User, MappingsKey());
  // What could not be read stays as it was; a policy that is not known is none that allows.
  if (!stored) return;
  for (const TRegistryValue &value : *stored) {
    const std::optional<TZonePattern> pattern = TZonePattern::Of(value.name);
    bool isNumber = false;
    const int zone = value.data.toInt(&isNumber);
    if (pattern && isNumber && IsZone(zone)) state->mappings.append({pattern->Text(), zone});
  }
  state->map.Set(state->mappings);
  for (int zone = 0; zone < ZoneCount; ++zone) {
    const auto values = m_store.KnownValues(User, ZoneKey(zone));
    if (!values) return;
    for (size_t i = 0; i < UrlActions.size(); ++i) {
      const QString name = ActionName(UrlActions[i]);
      const auto value = std::ranges::find_if(
          *values, [&](const TRegistryValue &one) { return one.name.compare(name, Qt::CaseInsensitive) == 0; });
      bool isNumber = false;
      const unsigned policy = value != values->end() ? value->data.toUInt(&isNumber) : 0;
      state->policies[size_t(zone)][i] = isNumber ? policy : DefaultPolicy(zone);
    }
  }
  m_seen = seen;
  const QMutexLocker lock(&m_guard);
  m_state = std::move(state);
}

void TZoneStore::Look() const {
  if (QThread::currentThread() != m_thread) return;
  const quint64 revision = m_store.Revision();
  if (m_seen == revision) return;
  const bool isKnown =
      m_state != nullptr && m_store.Read(User, ZoneMapKey(), RevisionName).value_or(QString()) == m_state->revision;
  if (isKnown) {
    m_seen = revision;
  } else {
    const_cast<TZoneStore *>(this)->Reload();
  }
}

std::shared_ptr<const TZoneStore::TState> TZoneStore::State() const {
  Look();
  {
    const QMutexLocker lock(&m_guard);
    if (m_state) return m_state;
  }
  // Nothing could be read yet: no site is known, and nobody's rules allow anything but the machine's own.
  static const std::shared_ptr<const TState> unknown = [] {
    auto state = std::make_shared<TState>();
    for (int zone = 0; zone < ZoneCount; ++zone) {
      state->policies[size_t(zone)].fill(zone == ZoneNumber::LocalMachine ? Allow : Disallow);
    }
    return state;
  }();
  return unknown;
}

int TZoneStore::ZoneOf(const QString &address) const {
  return State()->map.ZoneOf(address);
}

unsigned TZoneStore::Policy(int zone, TUrlAction action) const {
  if (!IsZone(zone)) return Allow;
  return State()->policies[size_t(zone)][IndexOf(action)];
}

bool TZoneStore::Write(const std::function<bool()> &work) {
  const bool isWritten = m_store.InTransaction([&] {
    return work() && m_store.Write(User, ZoneMapKey(), RevisionName, QUuid::createUuid().toString(QUuid::Id128));
  });
  Reload();
  return isWritten;
}

bool TZoneStore::SetPolicy(int zone, TUrlAction action, unsigned policy) {
  return IsZone(zone) && Write([&] { return m_store.WriteInteger(User, ZoneKey(zone), ActionName(action), policy); });
}

bool TZoneStore::ResetPolicies(int zone) {
  return IsZone(zone) && Write([&] {
           return std::ranges::all_of(UrlActions, [&](TUrlAction action) {
             return m_store.DeleteValue(User, ZoneKey(zone), ActionName(action));
           });
         });
}

QList<TZoneMapping> TZoneStore::Mappings() const {
  return State()->mappings;
}

QString TZoneStore::Revision() const {
  return State()->revision;
}

bool TZoneStore::AddMapping(const QString &text, int zone) {
  const std::optional<TZonePattern> pattern = TZonePattern::Of(text);
  if (!pattern || !IsZone(zone)) return false;
  return Write([&] { return m_store.WriteInteger(User, MappingsKey(), pattern->Text(), zone); });
}

bool TZoneStore::RemoveMapping(const QString &text) {
  const std::optional<TZonePattern> pattern = TZonePattern::Of(text);
  if (!pattern || !m_store.Read(User, MappingsKey(), pattern->Text())) return false;
  return Write([&] { return m_store.DeleteValue(User, MappingsKey(), pattern->Text()); });
}

bool TZoneStore::RemoveMappings(const QStringList &texts) {
  return Write([&] {
    return std::ranges::all_of(texts, [&](const QString &text) {
      const std::optional<TZonePattern> pattern = TZonePattern::Of(text);
      return !pattern || m_store.DeleteValue(User, MappingsKey(), pattern->Text());
    });
  });
}
