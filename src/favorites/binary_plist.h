#pragma once

#include <QByteArrayView>
#include <QString>

// Property lists in their binary form, as far as files of one address need them.
namespace BinaryPlist {

// The text under that key in the dictionary which the list consists of; empty where there is none. Takes any bytes.
[[nodiscard]] QString TextOf(QByteArrayView bytes, const QString &key);

}  // namespace BinaryPlist
