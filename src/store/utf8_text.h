#pragma once

#include <QByteArrayView>
#include <QString>

// The text of these bytes. A byte-order mark in front is a character of the text like any other, which
// QString::fromUtf8 would drop; what is no UTF-8 becomes U+FFFD.
[[nodiscard]] QString TextOfUtf8(QByteArrayView bytes);
