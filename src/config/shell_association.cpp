#include "config/shell_association.h"

#include <algorithm>
#include <QCoreApplication>

#include "config/registry_paths.h"
#include "store/registry_store.h"

namespace {

const QString Verb = QStringLiteral("Zarvela");
const QString Unnamed;

QString ShellKey(const QString &className) {
  return className + QLatin1Char('\\') + QLatin1String(RegistryKey::Shell);
}

}  // namespace

TShellAssociation::TRecord TShellAssociation::Read(const QString &className) const {
  const auto read = [this](const QString &key) {
    return m_store.Read(TRegistryHive::ClassesRoot, key, Unnamed).value_or(QString());
  };
  return {className, read(ShellKey(className)), read(className)};
}

bool TShellAssociation::IsDefaultBrowser() const {
  return std::all_of(std::begin(Classes), std::end(Classes), [this](const char *className) {
    return Read(QString::fromLatin1(className)).defaultVerb == Verb;
  });
}

void TShellAssociation::Set(const QString &className, bool on) {
  const bool isOurs = Read(className).defaultVerb == Verb;
  if (on == isOurs) return;
  const QString shell = ShellKey(className);
  if (!on) {
    m_store.Write(TRegistryHive::ClassesRoot, shell, Unnamed, QStringLiteral("open"));
    return;
  }
  const QString verbKey = shell + QLatin1Char('\\') + Verb;
  m_store.InTransaction([&] {
    // The program's path stands without quotes of its own while the argument is quoted; the form is meant.
    return m_store.Write(TRegistryHive::ClassesRoot, shell, Unnamed, Verb) &&
           m_store.Write(TRegistryHive::ClassesRoot, verbKey, Unnamed, Verb) &&
           m_store.Write(TRegistryHive::ClassesRoot, verbKey + QLatin1Char('\\') + QLatin1String(RegistryKey::Command),
                         Unnamed, QCoreApplication::applicationFilePath() + QStringLiteral(" \"%1\""));
  });
}

void TShellAssociation::SetAll(bool on) {
  for (const char *className : Classes) Set(QString::fromLatin1(className), on);
}
