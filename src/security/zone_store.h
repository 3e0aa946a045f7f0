#pragma once

#include <array>
#include <memory>
#include <optional>
#include <QList>
#include <QMutex>
#include <QString>
#include <QStringList>

#include "security/zone_map.h"

class QThread;
class TRegistryStore;

// What a zone's pages may be allowed, by the numbers of the platform, which are also the names of the values.
enum class TUrlAction : unsigned {
  ActiveX = 0x1200,         // plug-ins
  Scripting = 0x1400,       // scripts
  Cookies = 0x1A02,         // stored cookies
  SessionCookies = 0x1A03,  // those that end with the program
};
inline constexpr std::array UrlActions{TUrlAction::ActiveX, TUrlAction::Scripting, TUrlAction::Cookies,
                                       TUrlAction::SessionCookies};

// The security zones: which sites are mapped to which, and what each allows.
//
// They lie in the registry store below RegistryKey::InternetSettings. "ZoneMap\Domains" has a value for each mapping:
// its name is the pattern, its data the zone's number. "Zones\<number>" has a value for each action: its name is the
// action's number in hexadecimal, its data a policy of the platform (0 allow, 1 query, 3 disallow; others are kept as
// they are). "ZoneMap", "Revision" changes with each write, which tells it from writes of other things to the same
// file.
//
// What is asked is answered from memory, on any thread. The thread that made the object writes, and looks, when
// it asks, whether another process has written.
class TZoneStore final {
 public:
  static constexpr unsigned Allow = 0;
  static constexpr unsigned Query = 1;
  static constexpr unsigned Disallow = 3;

  // `store` must live longer. Nothing is read before the first question.
  explicit TZoneStore(TRegistryStore &store);
  ~TZoneStore();

  // See TZoneMap.
  [[nodiscard]] int ZoneOf(const QString &address) const;
  // The platform's value; "allow" for what is no zone. In the restricted zone (4) nothing is allowed by default,
  // elsewhere everything.
  [[nodiscard]] unsigned Policy(int zone, TUrlAction action) const;
  [[nodiscard]] static unsigned DefaultPolicy(int zone);
  // False for what is no zone, or where the store refuses it.
  bool SetPolicy(int zone, TUrlAction action, unsigned policy);
  // The four actions of the zone as they are by default.
  bool ResetPolicies(int zone);

  // In the order in which they were first made.
  [[nodiscard]] QList<TZoneMapping> Mappings() const;
  // Maps the pattern to that zone, whatever it was mapped to before. False for what is no pattern or no zone, or where
  // the store refuses it.
  bool AddMapping(const QString &pattern, int zone);
  // False when there is no such mapping.
  bool RemoveMapping(const QString &pattern);
  // The same of many at once; what is not there is no failure.
  bool RemoveMappings(const QStringList &patterns);

  // Another text after each change.
  [[nodiscard]] QString Revision() const;
  // Reads anew what another process may have written.
  void Reload();

 private:
  struct TState;

  [[nodiscard]] std::shared_ptr<const TState> State() const;
  void Look() const;
  bool Write(const std::function<bool()> &work);

  TRegistryStore &m_store;
  const QThread *m_thread;
  mutable QMutex m_guard;  // of the pointer, not of what it points to, which never changes
  mutable std::shared_ptr<const TState> m_state;
  mutable std::optional<quint64> m_seen;  // the registry's revision that m_state goes by
};
