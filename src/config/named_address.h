#pragma once

#include <QList>
#include <QString>

// A name with its address: an entry of a search list, a page of a group, a page to open again. In files and in the
// store it is a line "name=address".
struct TNamedAddress {
  QString name{};
  QString address{};

  bool operator==(const TNamedAddress &) const = default;

  // As the line would be read: its name ends at its first "=", so that of a name which holds one the rest goes to the
  // address.
  [[nodiscard]] TNamedAddress AsRead() const;
  // The address of a line whose name may hold "=": what follows the first "=" before "http://" or "https://", so that
  // an address which holds another one stays whole. A line with neither has its address behind the name.
  [[nodiscard]] QString WebAddress() const;
};

using TNamedAddresses = QList<TNamedAddress>;
