#pragma once

#include <QList>
#include <QSslCertificate>
#include <QString>
#include <QUrl>

class QWebEngineCertificateError;
class QWebEngineLoadingInfo;
class TLanguage;

// What was wrong with a server's certificate.
struct TCertificateProblem {
  QUrl url{};
  int type = 0;              // QWebEngineCertificateError::Type
  bool overridable = false;  // The user may go on in spite of it.
  QList<QSslCertificate> chain{};

  [[nodiscard]] static TCertificateProblem Of(const QWebEngineCertificateError &error);
};

// Why a page could not be loaded. Codes are the network stack's own, negative numbers, or an HTTP status.
struct TLoadFailure {
  QUrl url{};
  int code = 0;
  bool isHttpStatus = false;
  QString name{};  // the error's own name, for those who look it up

  [[nodiscard]] static TLoadFailure Of(const QUrl &url, const QWebEngineLoadingInfo &info);
};

// The plain words for a failure.
[[nodiscard]] QString FailureText(const TLoadFailure &failure, const TLanguage &language);
// The plain words for what is wrong with a certificate.
[[nodiscard]] QString CertificateProblemText(const TCertificateProblem &problem, const TLanguage &language);
// Subject, issuer and dates of a certificate, one to a line; empty for none.
[[nodiscard]] QString DescribeCertificate(const QSslCertificate &certificate, const TLanguage &language);
