#pragma once

#include <QHash>
#include <QSet>
#include <QStringList>

#include "browser/engine/load_failure.h"

// The hosts whose bad certificates the user lets through, for this run. Names of hosts compare without regard to case.
//
// The engine asks once for each host and remembers the answer for as long as it runs. So where an exception is taken
// back, requests to the host are stopped, and what was wrong is told from here.
class TCertificateExceptions final {
 public:
  void Add(const QString &host);
  void Remove(const QString &host);
  [[nodiscard]] bool Has(const QString &host) const { return m_accepted.contains(host.toLower()); }
  // In the order of their names.
  [[nodiscard]] QStringList Hosts() const;

  // An exception for the host was taken back, and it has none now.
  [[nodiscard]] bool IsTakenBack(const QString &host) const { return m_takenBack.contains(host.toLower()); }
  void NoteProblem(const QString &host, const TCertificateProblem &problem);
  // What the engine said of the host's certificate last.
  [[nodiscard]] TCertificateProblem Problem(const QString &host) const { return m_problems.value(host.toLower()); }

 private:
  QSet<QString> m_accepted;
  QSet<QString> m_takenBack;
  QHash<QString, TCertificateProblem> m_problems;
};
