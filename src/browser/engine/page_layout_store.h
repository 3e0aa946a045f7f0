#pragma once

#include <QPageLayout>

class TRegistryStore;

// The page layout for printing, which lasts: size, orientation and margins (millimetres) under the settings' key "Page
// Setup". What is missing or makes no sense there is replaced by A4, portrait, and margins of 10 mm.
namespace PageLayoutStore {

[[nodiscard]] QPageLayout Load(const TRegistryStore &store);
// A refused write is not reported.
void Save(TRegistryStore &store, const QPageLayout &layout);

}  // namespace PageLayoutStore
