#pragma once

class QString;
class QUrl;
class TLanguage;

// The name of the site that a question comes from, for the user to judge it by: scheme, host and port, the host in its
// ASCII form so that look-alike letters show. Pages without a host are named in words.
[[nodiscard]] QString OriginText(const QUrl &origin, const TLanguage &language);
