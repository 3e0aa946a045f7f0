#pragma once

#include <array>
#include <functional>
#include <optional>
#include <QList>
#include <QString>
#include <QStringView>
#include <unordered_map>

// The security zones by their numbers. Policies and mappings exist for the five known ones alone.
namespace ZoneNumber {

inline constexpr int Unknown = -1;
inline constexpr int LocalMachine = 0;
inline constexpr int LocalIntranet = 1;
inline constexpr int Internet = 3;
inline constexpr int Restricted = 4;

}  // namespace ZoneNumber

inline constexpr int ZoneCount = 5;
[[nodiscard]] constexpr bool IsZone(int zone) {
  return zone >= 0 && zone < ZoneCount;
}

// A pattern of sites: a scheme and a host, where the host may stand for its sub-domains ("https://*.example.com"),
// which does not take in the host itself. Without a scheme it is meant for http and https alike.
struct TZonePattern {
  enum class TScheme { Http, Https, Any };

  TScheme scheme = TScheme::Any;
  bool subDomains = false;
  QString host{};  // in lower case and ASCII ("xn--…")

  bool operator==(const TZonePattern &) const = default;

  // std::nullopt for anything that is no pattern: other schemes, paths, queries, user names, stars elsewhere. A lone
  // slash at the end and a port mean nothing.
  [[nodiscard]] static std::optional<TZonePattern> Of(const QString &text);
  // The one way to write it.
  [[nodiscard]] QString Text() const;
};

// A pattern, as text, with its zone.
struct TZoneMapping {
  QString pattern{};
  int zone = -1;

  bool operator==(const TZoneMapping &) const = default;
};

// Which zone an address belongs to: a table of hosts, so that it does not matter how many patterns there are. Any
// thread may ask.
class TZoneMap final {
 public:
  // Of several mappings of one pattern the last counts; what is no pattern or names no zone is left out.
  void Set(const QList<TZoneMapping> &mappings);

  // The zone of an address as the engine tells it: files and the program's own pages are 0; then what is mapped, the
  // most specific pattern (the host itself, the longest domain, a named scheme before any); hosts without a dot are 1,
  // all else is 3. A page within a page's address ("blob:") has that one's zone but for 0, which becomes 3. Neither
  // ports nor the way in which an international name is written matter. -1 for what is no address.
  [[nodiscard]] int ZoneOf(const QString &address) const;
  // The address of the page that `address` is a part or the source of; `address` itself where it is no such one.
  [[nodiscard]] static QString PageOf(const QString &address);

 private:
  static constexpr int SchemeCount = 3;
  static constexpr signed char NoZone = -1;
  // By the scheme, for the host itself and for what is below it.
  struct TZones {
    std::array<signed char, SchemeCount> own{NoZone, NoZone, NoZone};
    std::array<signed char, SchemeCount> below{NoZone, NoZone, NoZone};
  };
  // So that a part of an address is looked up without a copy of it.
  struct THash {
    using is_transparent = void;
    size_t operator()(QStringView text) const { return qHash(text); }
  };

  [[nodiscard]] int ZoneOf(const QString &address, int depth) const;
  [[nodiscard]] int ZoneOfHost(QStringView host, TZonePattern::TScheme scheme) const;

  std::unordered_map<QString, TZones, THash, std::equal_to<>> m_hosts;
};
