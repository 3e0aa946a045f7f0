#pragma once

#include <optional>
#include <QStringList>

#include "config/named_address.h"

// Names with their addresses as lines "name=address", which data tables and failures show better.

[[nodiscard]] inline TNamedAddresses FromLines(const QStringList &lines) {
  TNamedAddresses entries;
  for (const QString &line : lines) entries.append({line.section(u'=', 0, 0), line.section(u'=', 1)});
  return entries;
}

[[nodiscard]] inline QStringList ToLines(const TNamedAddresses &entries) {
  QStringList lines;
  for (const TNamedAddress &entry : entries) lines.append(entry.name + u'=' + entry.address);
  return lines;
}

[[nodiscard]] inline QStringList ToLines(const std::optional<TNamedAddresses> &entries) {
  return entries ? ToLines(*entries) : QStringList("could not be read");
}
