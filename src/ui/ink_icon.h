#pragma once

#include <QIcon>

// `coloured` in one ink, that of the desktop's button texts or, in a selected row, of its text; in its own colours
// under the mouse (QIcon::Active).
[[nodiscard]] QIcon InkIcon(const QIcon &coloured);
