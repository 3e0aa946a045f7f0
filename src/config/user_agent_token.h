#pragma once

#include <QString>

class TRegistryStore;

// The program's word in the user agent. It stands among the tokens in the registry's "Post Platform" key only while the
// program runs; what earlier versions have left there is swept out at every start and close.
namespace UserAgentToken {

inline constexpr const char *Name = "Zarvela 6.2.1A";

// `on` at the start, off at the end. Does nothing where the key cannot be opened.
void Register(TRegistryStore &store, bool on);
// What the registry holds of it; empty when it is not registered.
[[nodiscard]] QString Registered(const TRegistryStore &store);

}  // namespace UserAgentToken
