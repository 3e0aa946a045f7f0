#include "chrome/options/certificates_page.h"

#include "browser/engine/certificate_exceptions.h"

TCertificatesPage::TCertificatesPage(const TLanguage &language, TCertificateExceptions &exceptions, QWidget *parent)
    : TRemovalList("tsCertificates", language, {"OPTIONS", "CertificateList"},
                   {language.Text("OPTIONS", "PermissionSite")}, parent),
      m_exceptions(exceptions) {
  for (const QString &host : exceptions.Hosts()) AddRow({host}, host);
}

void TCertificatesPage::Write() {
  for (const QVariant &host : Removed()) m_exceptions.Remove(host.toString());
}
