#pragma once

#include <QList>
#include <QString>
#include <QStringList>

class TRegistryStore;

// Programs that stand in the registry's own keys: editors of web pages, mail and news clients, the system's browser.
// The desktop's own entries (TDesktopEntries) come beside them. A missing key or value yields nothing.
namespace RegisteredPrograms {

struct TEditor {
  QString program;  // file name, what EditCommand wants
  QString name;     // as menus show it
};
struct TMailClient {
  QString name;
  QString command;  // a command line
};

[[nodiscard]] QList<TEditor> Editors(const TRegistryStore &store);
// The program and its arguments that edit `file`; empty when the program says of itself neither how it edits nor how it
// opens a file.
[[nodiscard]] QStringList EditCommand(const TRegistryStore &store, const QString &program, const QString &file);

[[nodiscard]] QList<TMailClient> MailClients(const TRegistryStore &store);
// The default clients' commands; empty when none is registered.
[[nodiscard]] QStringList MailReader(const TRegistryStore &store);
[[nodiscard]] QStringList NewsReader(const TRegistryStore &store);
// The system's own browser with an address to open, or by itself; empty when none is registered.
[[nodiscard]] QStringList SystemBrowser(const TRegistryStore &store, const QString &address);

// A command template with the first "%1" in it replaced by `file`; where there is none the file stands at its end. The
// file is one argument, whatever its name has in it, and a further "%1" stays as it is.
[[nodiscard]] QStringList FillTemplate(const QString &commandTemplate, const QString &file);
// The names of environment variables between two percent signs replaced by what they hold, unknown ones left as they
// are. Empty when the text would become longer than 512 characters, which is what such commands may have.
[[nodiscard]] QString ExpandVariables(const QString &command);

}  // namespace RegisteredPrograms
