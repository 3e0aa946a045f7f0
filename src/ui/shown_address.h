#pragma once

#include <QString>

// An address as the user is to read it. "about:blank" is shown as nothing. An international host name is shown in its
// own letters where it cannot be taken for another one; a name that mixes scripts as no language does, or that is made
// of nothing but letters which look like Latin ones, stays in its ASCII form. What is shown opens the same page when it
// is copied or typed again.
[[nodiscard]] QString ShownAddress(const QString &address);

// The same for a host name in its ASCII form.
[[nodiscard]] QString ShownHost(const QString &host);

// True when a label of a host name (the part between two dots) may be shown in its own letters.
[[nodiscard]] bool IsHonestLabel(const QString &label);
