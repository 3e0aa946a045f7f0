#pragma once

#include <QString>

class TRegistryStore;
struct TProductInfo;

// The home page: what the user chose (the "Start Page" value that the system's browser shares), else the deployment's
// default, else the start page that is shipped.
namespace HomePage {

// The stored choice as it is; empty when there is none.
[[nodiscard]] QString Chosen(const TRegistryStore &store);
void Choose(TRegistryStore &store, const QString &address);
[[nodiscard]] QString Address(const TRegistryStore &store, const TProductInfo &product);
// The program's default home page: the deployment's, else the shipped start page.
[[nodiscard]] QString Default(const TProductInfo &product);

}  // namespace HomePage
