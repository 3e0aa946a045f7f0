#include "chrome/bands/band_store.h"

#include <algorithm>

#include "config/registry_paths.h"
#include "store/registry_store.h"

namespace {

constexpr TRegistryHive Hive = TRegistryHive::CurrentUser;
const QString Name = QStringLiteral("Name");
const QString Width = QStringLiteral("Width");
const QString Break = QStringLiteral("Break");

QString KeyOf(int position) {
  return QStringLiteral("%1\\Band%2").arg(QLatin1String(RegistryKey::Bands)).arg(position);
}

std::optional<QString> TextOf(const QList<TRegistryValue> &values, const QString &name) {
  for (const TRegistryValue &value : values) {
    if (value.name.compare(name, Qt::CaseInsensitive) == 0) return value.data;
  }
  return std::nullopt;
}

std::optional<qint64> NumberOf(const QList<TRegistryValue> &values, const QString &name) {
  bool isNumber = false;
  const qint64 number = TextOf(values, name).value_or(QString()).toLongLong(&isNumber);
  return isNumber ? std::optional(number) : std::nullopt;
}

}  // namespace

std::optional<QList<TBandStore::TValues>> TBandStore::Read() const {
  QList<TValues> all;
  for (int position = 0; position < BandCount; ++position) {
    const auto values = m_store.KnownValues(Hive, KeyOf(position));
    if (!values) return std::nullopt;
    all.append(*values);
  }
  return all;
}

TBandArrangement TBandStore::Load() {
  m_read = Read();
  TBandArrangement bands;
  for (int position = 0; m_read && position < BandCount; ++position) {
    const TValues &values = m_read->at(position);
    const QString name = TextOf(values, Name).value_or(QString());
    const auto row =
        std::ranges::find_if(BandRows, [&name](const TBandRow &known) { return name == QLatin1String(known.name); });
    if (row == BandRows.end()) continue;
    bands.MoveTo(row->band, position);
    if (const auto width = NumberOf(values, Width)) bands.SetWidth(row->band, *width);
    if (const auto breaks = NumberOf(values, Break)) bands.SetBreak(row->band, *breaks != 0);
  }
  m_loaded = bands;
  return bands;
}

void TBandStore::Save(const TBandArrangement &bands) {
  if (bands.IsLike(m_loaded) && (!m_read || Read() != m_read)) return;
  const bool isWritten = m_store.InTransaction([&] {
    bool isFine = m_store.DeleteKey(Hive, QString::fromLatin1(RegistryKey::Bands));
    for (int position = 0; position < BandCount; ++position) {
      const TBand band = bands.At(position);
      const QString key = KeyOf(position);
      const char *name = BandRows[static_cast<size_t>(band)].name;
      isFine = isFine && m_store.Write(Hive, key, Name, QString::fromLatin1(name)) &&
               m_store.WriteInteger(Hive, key, Width, bands.Width(band)) &&
               m_store.WriteInteger(Hive, key, Break, bands.Breaks(band) ? 1 : 0);
    }
    return isFine;
  });
  if (!isWritten) return;
  m_loaded = bands;
  m_read = Read();
}
