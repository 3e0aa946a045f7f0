#include "config/shell_association.h"

#include <algorithm>
#include <QCoreApplication>

#include "config/registry_paths.h"
#include "platform/desktop_defaults.h"
#include "store/registry_store.h"

namespace {

const QString Verb = QStringLiteral("Zarvela");
const QString Unnamed;
// In the program's verb: the entry that the desktop opened the class with before.
const QString Before = QStringLiteral("Before");

// What the desktop calls the things of a class; the others are none of its affairs.
struct TClassType {
  const char *className;
  const char *type;
};
constexpr TClassType ClassTypes[] = {
    {"htmlfile", "text/html"},
    {"http", "x-scheme-handler/http"},
    {"https", "x-scheme-handler/https"},
};

QString ShellKey(const QString &className) {
  return className + QLatin1Char('\\') + QLatin1String(RegistryKey::Shell);
}
QString VerbKey(const QString &className) {
  return ShellKey(className) + QLatin1Char('\\') + Verb;
}

QStringList AllClasses() {
  return {std::begin(TShellAssociation::Classes), std::end(TShellAssociation::Classes)};
}

// The classes that the desktop knows, as class and type.
QList<std::pair<QString, QString>> DesktopTypes(const QStringList &classes) {
  QList<std::pair<QString, QString>> types;
  for (const TClassType &row : ClassTypes) {
    const QString className = QString::fromLatin1(row.className);
    if (classes.contains(className)) types.append({className, QString::fromLatin1(row.type)});
  }
  return types;
}

}  // namespace

TShellAssociation::TRecord TShellAssociation::Read(const QString &className) const {
  const auto read = [this](const QString &key) {
    return m_store.Read(TRegistryHive::ClassesRoot, key, Unnamed).value_or(QString());
  };
  return {className, read(ShellKey(className)), read(className)};
}

bool TShellAssociation::IsOurs(const QString &className) const {
  return Read(className).defaultVerb == Verb;
}

bool TShellAssociation::IsDefaultBrowser() const {
  return std::all_of(std::begin(Classes), std::end(Classes),
                     [this](const char *className) { return IsOurs(QString::fromLatin1(className)); });
}

bool TShellAssociation::SetKeys(const QString &className, bool on) {
  if (on == IsOurs(className)) return false;
  const QString shell = ShellKey(className);
  if (!on) {
    m_store.Write(TRegistryHive::ClassesRoot, shell, Unnamed, QStringLiteral("open"));
    return true;
  }
  const QString verbKey = VerbKey(className);
  m_store.InTransaction([&] {
    // The program's path stands without quotes of its own while the argument is quoted; the form is meant.
    return m_store.Write(TRegistryHive::ClassesRoot, shell, Unnamed, Verb) &&
           m_store.Write(TRegistryHive::ClassesRoot, verbKey, Unnamed, Verb) &&
           m_store.Write(TRegistryHive::ClassesRoot, verbKey + QLatin1Char('\\') + QLatin1String(RegistryKey::Command),
                         Unnamed, QCoreApplication::applicationFilePath() + QStringLiteral(" \"%1\""));
  });
  return true;
}

void TShellAssociation::Change(const QStringList &on, const QStringList &off) {
  QStringList taken;
  QStringList left;
  for (const QString &className : AllClasses()) {
    if (on.contains(className) && SetKeys(className, true)) taken.append(className);
    if (off.contains(className) && SetKeys(className, false)) left.append(className);
  }
  // First, since part of it is done at once, and no tool may be at the same lists then.
  if (!left.isEmpty()) TakeBackDesktopDefault(left, false);
  if (taken.isEmpty()) return;
  // The last of them makes the program the desktop's browser, which is more than the single types.
  const auto rows = DesktopTypes(AllClasses());
  const bool isWhole = !DesktopTypes(taken).isEmpty() &&
                       std::ranges::all_of(rows, [this](const auto &row) { return IsOurs(row.first); });
  MakeDesktopDefault(isWhole ? AllClasses() : taken);
}

void TShellAssociation::Set(const QString &className, bool on) {
  on ? Change({className}, {}) : Change({}, {className});
}

void TShellAssociation::SetOnly(const QStringList &classes) {
  QStringList others = AllClasses();
  others.removeIf([&](const QString &className) { return classes.contains(className); });
  Change(classes, others);
}

void TShellAssociation::SetAll(bool on) {
  const QStringList classes = AllClasses();
  for (const QString &className : classes) SetKeys(className, on);
  if (on) {
    MakeDesktopDefault(classes);
  } else {
    TakeBackDesktopDefault(classes, false);
  }
}

void TShellAssociation::Unregister() {
  const QStringList classes = AllClasses();
  for (const QString &className : classes) SetKeys(className, false);
  TakeBackDesktopDefault(classes, true);
}

void TShellAssociation::MakeDesktopDefault(const QStringList &classes) {
  if (m_desktop == nullptr) return;
  const auto rows = DesktopTypes(classes);
  QStringList types;
  for (const auto &[className, type] : rows) types.append(type);
  const TDesktopDefaults::TBefore before = m_desktop->Make(types);
  for (const auto &[className, type] : rows) {
    const QString entry = before.value(type);
    if (!entry.isEmpty()) m_store.Write(TRegistryHive::ClassesRoot, VerbKey(className), Before, entry);
  }
}

void TShellAssociation::TakeBackDesktopDefault(const QStringList &classes, bool forget) {
  if (m_desktop == nullptr) return;
  QStringList types;
  TDesktopDefaults::TBefore before;
  for (const auto &[className, type] : DesktopTypes(classes)) {
    types.append(type);
    before.insert(type, m_store.Read(TRegistryHive::ClassesRoot, VerbKey(className), Before).value_or(QString()));
  }
  m_desktop->TakeBack(types, before, forget);
}
