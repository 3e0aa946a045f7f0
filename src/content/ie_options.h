#pragma once

#include <array>
#include <optional>

class QString;
class TRegistryStore;

// The kinds of content that are switched on and off for all pages, in the order in which they are loaded.
enum class TContentSwitch { Images, Sounds, Animations, Videos };
inline constexpr std::array ContentSwitches{TContentSwitch::Images, TContentSwitch::Sounds, TContentSwitch::Animations,
                                            TContentSwitch::Videos};

// By TContentSwitch; true for on.
using TContentStates = std::array<bool, ContentSwitches.size()>;

// The switches as they are stored: settings of the system's browser, which it shares with every program that shows
// pages, in the key RegistryKey::SystemBrowser. "yes" in exactly this spelling is on, any other text is off, and what
// is not there or cannot be read is on. No copy is kept here.
class TIEOptions final {
 public:
  // Below which the switches are; it is what others are told when one of them has changed.
  static constexpr const char *Area = R"(Software\Microsoft\Internet Explorer\)";

  // `store` must live longer.
  explicit TIEOptions(TRegistryStore &store) : m_store(store) {}

  [[nodiscard]] bool Get(TContentSwitch which) const;
  // "yes" or "no"; false when the store refuses it.
  bool Set(TContentSwitch which, bool on);
  // All of them in one look; std::nullopt when the store could not be looked into now.
  [[nodiscard]] std::optional<TContentStates> KnownStates() const;

 private:
  TRegistryStore &m_store;
};
