#pragma once

#include "browser/engine/engine.h"

class QWebEnginePage;
struct TPagePermissions;

// Which kinds of content the permissions allow.
[[nodiscard]] TDownloadControlOptionSet ContentKindsOf(const TPagePermissions &may);

// The fragment of an address that a player of sounds alone has asked for; nobody else knows it.
[[nodiscard]] const QString &SoundMark();

// Has the document that the page is about to load show, play and move no more than `may` allows. What would come as a
// request of its own is a matter of TContentFilter; this is about the rest.
void ApplyContent(QWebEnginePage &page, const TPagePermissions &may);
