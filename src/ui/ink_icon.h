#pragma once

#include <QIcon>

// `coloured` in one ink, that of the desktop's button texts, and in its colours under the mouse (QIcon::Active).
[[nodiscard]] QIcon InkIcon(const QIcon &coloured);
