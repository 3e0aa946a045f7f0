#pragma once

#include <QWebEngineDownloadRequest>

class TLanguage;

// Downloads in words.
namespace DownloadText {

// Why the engine gave up, as far as the user can do something about it.
[[nodiscard]] QString Failure(QWebEngineDownloadRequest::DownloadInterruptReason reason, const TLanguage &language);
// "1.2 MB of 5 MB"; a `total` that is not known is negative, or 0 where the engine tells it so.
[[nodiscard]] QString Amount(qint64 received, qint64 total, const TLanguage &language);
// "300 kB/s, 2 min left"; `speed` in bytes per second. Empty while the speed is not known.
[[nodiscard]] QString Pace(qint64 received, qint64 total, double speed, const TLanguage &language);

}  // namespace DownloadText
