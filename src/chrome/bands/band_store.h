#pragma once

#include <optional>
#include <QList>

#include "chrome/bands/band_arrangement.h"

class TRegistryStore;
struct TRegistryValue;

// The arrangement of the bands in the registry store: below the key "Bands" a key for each position ("Band0", …) with
// the values "Name", "Width" (pixels) and "Break" (0 or 1).
class TBandStore final {
 public:
  // `store` must outlive this object.
  explicit TBandStore(TRegistryStore &store) : m_store(store) {}

  // The arrangement at first, changed by what is stored, position by position. One without a key, or with an unknown
  // name, stays as it is; a width or break that is missing or no number is the one that the band has.
  [[nodiscard]] TBandArrangement Load();
  // Replaces what is stored, in one piece. What was not changed since Load is not written over what another window has
  // stored meanwhile, nor over what could not be read.
  void Save(const TBandArrangement &bands);

 private:
  using TValues = QList<TRegistryValue>;

  // The values of each position; nothing when the store could not be looked into.
  [[nodiscard]] std::optional<QList<TValues>> Read() const;

  TRegistryStore &m_store;
  TBandArrangement m_loaded;
  std::optional<QList<TValues>> m_read;
};
