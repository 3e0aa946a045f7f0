#include "browser/tabs/home_page.h"

#include "browser/engine/address.h"
#include "browser/engine/engine.h"
#include "config/registry_paths.h"
#include "platform/product_info.h"
#include "store/registry_store.h"

namespace HomePage {

namespace {

const QString Key = QString::fromLatin1(RegistryKey::SystemBrowser);
const QString Value = QStringLiteral("Start Page");

}  // namespace

QString Chosen(const TRegistryStore &store) {
  return store.Read(TRegistryHive::CurrentUser, Key, Value).value_or(QString());
}

void Choose(TRegistryStore &store, const QString &address) {
  store.Write(TRegistryHive::CurrentUser, Key, Value, address);
}

std::optional<QString> OfTyped(const QString &text) {
  const TAddress address(text);
  if (address.Kind() == TAddress::TKind::Empty) return QString();
  return address.Kind() == TAddress::TKind::Url ? std::optional(AddressOf(address.Url())) : std::nullopt;
}

QString Address(const TRegistryStore &store, const TProductInfo &product) {
  const QString chosen = Chosen(store);
  return chosen.isEmpty() ? Default(product) : chosen;
}

QString Default(const TProductInfo &product) {
  return product.defaultHomePage.isEmpty() ? TEngine::StartPageAddress() : product.defaultHomePage;
}

}  // namespace HomePage
