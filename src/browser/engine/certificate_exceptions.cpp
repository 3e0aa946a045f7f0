#include "browser/engine/certificate_exceptions.h"

void TCertificateExceptions::Add(const QString &host) {
  m_accepted.insert(host.toLower());
  m_takenBack.remove(host.toLower());
}

void TCertificateExceptions::Remove(const QString &host) {
  if (m_accepted.remove(host.toLower())) m_takenBack.insert(host.toLower());
}

QStringList TCertificateExceptions::Hosts() const {
  QStringList hosts(m_accepted.begin(), m_accepted.end());
  hosts.sort();
  return hosts;
}

void TCertificateExceptions::NoteProblem(const QString &host, const TCertificateProblem &problem) {
  m_problems.insert(host.toLower(), problem);
}
