#include "config/registered_programs.h"

#include <QProcess>
#include <QRegularExpression>

#include "config/registry_paths.h"
#include "store/registry_store.h"

namespace RegisteredPrograms {

namespace {

constexpr qsizetype LongestCommand = 512;  // characters
const QString FileMark = QStringLiteral("%1");

template <typename... TParts>
QString Key(const TParts &...parts) {
  return (QStringList() << ... << QString(parts)).join(u'\\');
}
QString ApplicationShell(const QString &program) {
  return Key(QLatin1String(RegistryKey::Applications), program, QLatin1String(RegistryKey::Shell));
}
QString Unnamed(const TRegistryStore &store, TRegistryHive hive, const QString &key) {
  return store.Read(hive, key, {}).value_or(QString());
}
QString ClientCommand(const TRegistryStore &store, const char *clients, const QString &client) {
  return Unnamed(store, TRegistryHive::LocalMachine,
                 Key(QLatin1String(clients), client, QLatin1String("Shell"), QLatin1String("Open"),
                     QLatin1String(RegistryKey::Command)));
}
QStringList DefaultClient(const TRegistryStore &store, const char *clients) {
  const QString name = Unnamed(store, TRegistryHive::LocalMachine, QString::fromLatin1(clients));
  if (name.isEmpty()) return {};
  return QProcess::splitCommand(ExpandVariables(ClientCommand(store, clients, name)));
}

}  // namespace

QList<TEditor> Editors(const TRegistryStore &store) {
  QList<TEditor> editors;
  for (const QString &program : store.Subkeys(TRegistryHive::ClassesRoot, QLatin1String(RegistryKey::OpenWithList))) {
    const QString shell = ApplicationShell(program);
    if (!store.KeyExists(TRegistryHive::ClassesRoot, shell)) continue;
    const QString name = store.Read(TRegistryHive::ClassesRoot, shell, QStringLiteral("FriendlyCache")).value_or("");
    editors.append({program, name.isEmpty() ? program : name});
  }
  return editors;
}

QStringList EditCommand(const TRegistryStore &store, const QString &program, const QString &file) {
  for (const QLatin1String verb : {QLatin1String("edit"), QLatin1String("open")}) {
    const QString key = Key(ApplicationShell(program), verb, QLatin1String(RegistryKey::Command));
    // The first that is there counts, whatever stands in it.
    if (!store.KeyExists(TRegistryHive::ClassesRoot, key)) continue;
    return FillTemplate(Unnamed(store, TRegistryHive::ClassesRoot, key), file);
  }
  return {};
}

QStringList FillTemplate(const QString &commandTemplate, const QString &file) {
  QStringList command = QProcess::splitCommand(commandTemplate);
  if (command.isEmpty()) return {};
  for (QString &argument : command) {
    const qsizetype place = argument.indexOf(FileMark);
    if (place < 0) continue;
    argument.replace(place, FileMark.size(), file);
    return command;
  }
  command.append(file);
  return command;
}

QList<TMailClient> MailClients(const TRegistryStore &store) {
  QList<TMailClient> clients;
  for (const QString &name : store.Subkeys(TRegistryHive::LocalMachine, QLatin1String(RegistryKey::MailClients))) {
    clients.append({name, ClientCommand(store, RegistryKey::MailClients, name)});
  }
  return clients;
}

QStringList MailReader(const TRegistryStore &store) {
  return DefaultClient(store, RegistryKey::MailClients);
}

QStringList NewsReader(const TRegistryStore &store) {
  return DefaultClient(store, RegistryKey::NewsClients);
}

QStringList SystemBrowser(const TRegistryStore &store, const QString &address) {
  const QString server = Unnamed(store, TRegistryHive::ClassesRoot, QLatin1String(RegistryKey::SystemBrowserServer));
  QStringList command = QProcess::splitCommand(server);
  if (!command.isEmpty() && !address.isEmpty()) command.append(address);
  return command;
}

QString ExpandVariables(const QString &command) {
  static const QRegularExpression variable(QStringLiteral("%([^%]+)%"));
  QString expanded;
  qsizetype end = 0;
  for (auto matches = variable.globalMatch(command); matches.hasNext();) {
    const QRegularExpressionMatch match = matches.next();
    expanded += QStringView(command).mid(end, match.capturedStart() - end);
    const QByteArray name = match.captured(1).toLocal8Bit();
    expanded += qEnvironmentVariableIsSet(name.constData()) ? qEnvironmentVariable(name.constData()) : match.captured();
    end = match.capturedEnd();
  }
  expanded += QStringView(command).mid(end);
  return expanded.size() <= LongestCommand ? expanded : QString();
}

}  // namespace RegisteredPrograms
