#pragma once

#include <optional>
#include <QString>

class TRegistryStore;
struct TProductInfo;

// The home page: what the user chose (the "Start Page" value that the system's browser shares), else the deployment's
// default, else the start page that is shipped.
namespace HomePage {

// The stored choice as it is; empty when there is none.
[[nodiscard]] QString Chosen(const TRegistryStore &store);
// An empty address takes the choice back.
void Choose(TRegistryStore &store, const QString &address);
// The address to choose for what was typed, by the rules of the address bar; empty for nothing, and std::nullopt for
// what opens no page.
[[nodiscard]] std::optional<QString> OfTyped(const QString &text);
[[nodiscard]] QString Address(const TRegistryStore &store, const TProductInfo &product);
// The program's default home page: the deployment's, else the shipped start page.
[[nodiscard]] QString Default(const TProductInfo &product);

}  // namespace HomePage
