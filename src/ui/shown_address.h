#pragma once

#include <QString>

// An address as the user is to read it. "about:blank" is shown as nothing. An international host name is shown in its
// own letters where it cannot be taken for another one, each part between two dots by itself. In its ASCII form stays
// a part
//   - that mixes scripts as no language does (UTS 39, "highly restrictive"),
//   - with characters that no living language writes names with, or with marks that stand upon Latin letters by
//     themselves,
//   - made of nothing but letters which look like ASCII ones (UTS 39's list of confusable characters), or with one of
//     them among ASCII letters.
// What is shown opens the same page when it is copied or typed again.
[[nodiscard]] QString ShownAddress(const QString &address);

// The same for a host name in its ASCII form.
[[nodiscard]] QString ShownHost(const QString &host);
