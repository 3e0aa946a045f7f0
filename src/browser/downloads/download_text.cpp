#include "browser/downloads/download_text.h"

#include <array>
#include <QLocale>

#include "config/language.h"

namespace {

using TRequest = QWebEngineDownloadRequest;

constexpr int SecondsPerMinute = 60;
constexpr int SecondsPerHour = 3600;
constexpr double LongestWait = 100.0 * SecondsPerHour;  // beyond it, a guess tells nothing

struct TReasonText {
  TRequest::DownloadInterruptReason reason;
  TTextKey text;
};

// The engine has more reasons than its interface names: the file has ended before its announced length.
constexpr auto ServerContentLengthMismatch = TRequest::DownloadInterruptReason(38);

constexpr std::array ReasonTexts{
    TReasonText{ServerContentLengthMismatch, {"DOWNLOADS", "Incomplete"}},
    TReasonText{TRequest::FileFailed, {"DOWNLOADS", "FileFailed"}},
    TReasonText{TRequest::FileAccessDenied, {"DOWNLOADS", "NoPermission"}},
    TReasonText{TRequest::FileNoSpace, {"DOWNLOADS", "DiskFull"}},
    TReasonText{TRequest::FileNameTooLong, {"DOWNLOADS", "NameTooLong"}},
    TReasonText{TRequest::FileTooLarge, {"DOWNLOADS", "FileTooLarge"}},
    TReasonText{TRequest::FileVirusInfected, {"DOWNLOADS", "Unsafe"}},
    TReasonText{TRequest::FileTransientError, {"DOWNLOADS", "FileFailed"}},
    TReasonText{TRequest::FileBlocked, {"DOWNLOADS", "Unsafe"}},
    TReasonText{TRequest::FileSecurityCheckFailed, {"DOWNLOADS", "Unsafe"}},
    TReasonText{TRequest::FileTooShort, {"DOWNLOADS", "Incomplete"}},
    TReasonText{TRequest::FileHashMismatch, {"DOWNLOADS", "Incomplete"}},
    TReasonText{TRequest::NetworkFailed, {"DOWNLOADS", "NetworkFailed"}},
    TReasonText{TRequest::NetworkTimeout, {"DOWNLOADS", "NetworkTimeout"}},
    TReasonText{TRequest::NetworkDisconnected, {"DOWNLOADS", "Disconnected"}},
    TReasonText{TRequest::NetworkServerDown, {"DOWNLOADS", "ServerDown"}},
    TReasonText{TRequest::NetworkInvalidRequest, {"DOWNLOADS", "BadAddress"}},
    TReasonText{TRequest::ServerFailed, {"DOWNLOADS", "ServerFailed"}},
    TReasonText{TRequest::ServerBadContent, {"DOWNLOADS", "NotFound"}},
    TReasonText{TRequest::ServerUnauthorized, {"DOWNLOADS", "SignInNeeded"}},
    TReasonText{TRequest::ServerCertProblem, {"DOWNLOADS", "CertificateProblem"}},
    TReasonText{TRequest::ServerForbidden, {"DOWNLOADS", "Forbidden"}},
    TReasonText{TRequest::ServerUnreachable, {"DOWNLOADS", "ServerDown"}},
};

QString Size(qint64 bytes) {
  return QLocale().formattedDataSize(bytes, 1, QLocale::DataSizeTraditionalFormat);
}

QString TimeLeft(double seconds, const TLanguage &language) {
  if (seconds > LongestWait) return {};
  const int whole = qMax(1, qRound(seconds));
  if (whole == 1) return language.Text("DOWNLOADS", "SecondLeft").arg(whole);
  if (whole < SecondsPerMinute) return language.Text("DOWNLOADS", "SecondsLeft").arg(whole);
  if (whole < SecondsPerHour) {
    const int minutes = qRound(seconds / SecondsPerMinute);
    if (minutes == 1) return language.Text("DOWNLOADS", "MinuteLeft").arg(minutes);
    return language.Text("DOWNLOADS", "MinutesLeft").arg(minutes);
  }
  return language.Text("DOWNLOADS", "HoursLeft")
      .arg(whole / SecondsPerHour)
      .arg(whole % SecondsPerHour / SecondsPerMinute);
}

}  // namespace

QString DownloadText::Failure(TRequest::DownloadInterruptReason reason, const TLanguage &language) {
  for (const TReasonText &line : ReasonTexts) {
    if (line.reason == reason) return language.Text(line.text);
  }
  return language.Text("DOWNLOADS", "UnknownFailure");
}

QString DownloadText::Amount(qint64 received, qint64 total, const TLanguage &language) {
  if (total <= 0) return Size(received);
  return language.Text("DOWNLOADS", "Amount").arg(Size(received), Size(total));
}

QString DownloadText::Pace(qint64 received, qint64 total, double speed, const TLanguage &language) {
  if (speed < 1) return {};
  const QString pace = language.Text("DOWNLOADS", "Speed").arg(Size(qint64(speed)));
  const QString left = total > received ? TimeLeft(double(total - received) / speed, language) : QString();
  return left.isEmpty() ? pace : language.Text("DOWNLOADS", "SpeedAndTime").arg(pace, left);
}
