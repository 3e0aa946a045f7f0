#include "browser/engine/load_failure.h"

#include <algorithm>
#include <iterator>
#include <QLocale>
#include <QWebEngineCertificateError>
#include <QWebEngineLoadingInfo>

#include "config/language.h"
#include "ui/shown_address.h"

namespace {

struct TCodeText {
  int code;
  TTextKey text;
};

// The network stack's codes that users meet.
constexpr TCodeText NetworkTexts[] = {
    {-105, {"PAGES", "ErrorHostNotFound"}},
    {-137, {"PAGES", "ErrorHostNotFound"}},
    {-102, {"PAGES", "ErrorRefused"}},
    {-7, {"PAGES", "ErrorTimedOut"}},
    {-118, {"PAGES", "ErrorTimedOut"}},
    {-6, {"PAGES", "ErrorNoSuchFile"}},
    {-10, {"PAGES", "ErrorNoAccess"}},
    {-310, {"PAGES", "ErrorTooManyRedirects"}},
    {-324, {"PAGES", "ErrorEmptyResponse"}},
    {-100, {"PAGES", "ErrorConnectionLost"}},
    {-101, {"PAGES", "ErrorConnectionLost"}},
    {-103, {"PAGES", "ErrorConnectionLost"}},
    {-354, {"PAGES", "ErrorConnectionLost"}},
    {-355, {"PAGES", "ErrorConnectionLost"}},
    {-106, {"PAGES", "ErrorOffline"}},
    {-21, {"PAGES", "ErrorOffline"}},
    {-108, {"PAGES", "ErrorUnreachable"}},
    {-109, {"PAGES", "ErrorUnreachable"}},
    {-107, {"PAGES", "ErrorSecureConnection"}},
    {-113, {"PAGES", "ErrorSecureConnection"}},
    {-110, {"PAGES", "ErrorClientCertificate"}},
    {-111, {"PAGES", "ErrorProxy"}},
    {-115, {"PAGES", "ErrorProxy"}},
    {-120, {"PAGES", "ErrorProxy"}},
    {-130, {"PAGES", "ErrorProxy"}},
    {-312, {"PAGES", "ErrorUnsafePort"}},
    {-300, {"PAGES", "ErrorInvalidAddress"}},
    {-301, {"PAGES", "ErrorUnknownScheme"}},
    {-302, {"PAGES", "ErrorUnknownScheme"}},
    {-20, {"PAGES", "ErrorBlocked"}},
    {-22, {"PAGES", "ErrorBlocked"}},
    {-27, {"PAGES", "ErrorBlocked"}},
    {-320, {"PAGES", "ErrorInvalidResponse"}},
    {-370, {"PAGES", "ErrorInvalidResponse"}},
};

constexpr TCodeText StatusTexts[] = {
    {401, {"PAGES", "ErrorForbidden"}},
    {403, {"PAGES", "ErrorForbidden"}},
    {404, {"PAGES", "ErrorPageNotFound"}},
    {410, {"PAGES", "ErrorPageNotFound"}},
};

constexpr TCodeText CertificateTexts[] = {
    {QWebEngineCertificateError::CertificateCommonNameInvalid, {"PAGES", "CertificateWrongName"}},
    {QWebEngineCertificateError::CertificateDateInvalid, {"PAGES", "CertificateWrongDate"}},
    {QWebEngineCertificateError::CertificateAuthorityInvalid, {"PAGES", "CertificateUnknownIssuer"}},
    {QWebEngineCertificateError::CertificateRevoked, {"PAGES", "CertificateRevoked"}},
    {QWebEngineCertificateError::CertificateWeakKey, {"PAGES", "CertificateWeak"}},
    {QWebEngineCertificateError::CertificateWeakSignatureAlgorithm, {"PAGES", "CertificateWeak"}},
    {QWebEngineCertificateError::SslObsoleteVersion, {"PAGES", "CertificateWeak"}},
    {QWebEngineCertificateError::SslPinnedKeyNotInCertificateChain, {"PAGES", "CertificateIntercepted"}},
    {QWebEngineCertificateError::CertificateKnownInterceptionBlocked, {"PAGES", "CertificateIntercepted"}},
};

template <typename TTable>
const TCodeText *Find(const TTable &table, int code) {
  const auto found =
      std::find_if(std::begin(table), std::end(table), [code](const TCodeText &entry) { return entry.code == code; });
  return found == std::end(table) ? nullptr : &*found;
}

// A certificate names its parties by common name, organisation or both.
QString PartyName(const QStringList &commonNames, const QStringList &organizations) {
  QStringList parts = commonNames;
  for (const QString &organization : organizations) {
    if (!parts.contains(organization)) parts.append(organization);
  }
  return parts.join(QStringLiteral(", "));
}

}  // namespace

TCertificateProblem TCertificateProblem::Of(const QWebEngineCertificateError &error) {
  return {.url = error.url(),
          .type = error.type(),
          .overridable = error.isOverridable(),
          .chain = error.certificateChain()};
}

TLoadFailure TLoadFailure::Of(const QUrl &url, const QWebEngineLoadingInfo &info) {
  const bool status = info.errorDomain() == QWebEngineLoadingInfo::HttpStatusCodeDomain;
  // For a status the engine hands over a piece of its own error page.
  return {.url = url,
          .code = info.errorCode(),
          .isHttpStatus = status,
          .name = status ? QStringLiteral("HTTP %1").arg(info.errorCode()) : info.errorString()};
}

QString FailureText(const TLoadFailure &failure, const TLanguage &language) {
  if (failure.isHttpStatus) {
    const TCodeText *known = Find(StatusTexts, failure.code);
    return known ? language.Text(known->text) : language.Text("PAGES", "ErrorServer").arg(failure.code);
  }
  const TCodeText *known = Find(NetworkTexts, failure.code);
  return known ? language.Text(known->text).arg(ShownHost(failure.url.host(QUrl::FullyEncoded)))
               : language.Text("PAGES", "ErrorOther");
}

QString CertificateProblemText(const TCertificateProblem &problem, const TLanguage &language) {
  const TCodeText *known = Find(CertificateTexts, problem.type);
  return language.Text(known ? known->text : TTextKey{"PAGES", "CertificateInvalid"})
      .arg(ShownHost(problem.url.host(QUrl::FullyEncoded)));
}

QString DescribeCertificate(const QSslCertificate &certificate, const TLanguage &language) {
  if (certificate.isNull()) return {};
  const QLocale locale;
  // Some last into the next century.
  QString format = locale.dateFormat(QLocale::ShortFormat);
  if (!format.contains(QLatin1String("yyyy"))) format.replace(QLatin1String("yy"), QLatin1String("yyyy"));
  const auto date = [&](const QDateTime &when) { return locale.toString(when.toLocalTime().date(), format); };
  const QStringList lines{
      language.Text("PAGES", "CertificateSubject")
          .arg(PartyName(certificate.subjectInfo(QSslCertificate::CommonName),
                         certificate.subjectInfo(QSslCertificate::Organization))),
      language.Text("PAGES", "CertificateIssuer")
          .arg(PartyName(certificate.issuerInfo(QSslCertificate::CommonName),
                         certificate.issuerInfo(QSslCertificate::Organization))),
      language.Text("PAGES", "CertificateDates").arg(date(certificate.effectiveDate()), date(certificate.expiryDate())),
  };
  return lines.join(QLatin1Char('\n'));
}
