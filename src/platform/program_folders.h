#pragma once

#include <QString>
#include <QStringList>

// Where the program's files lie. Folders that the user owns follow the XDG base directories, read from the environment
// at every call; nothing is created unless a call says so.
namespace ProgramFolders {

// Shipped, read-only files: the executable's folder, or ../share/zarvela beside an installed executable.
[[nodiscard]] QString Shipped();
// The user's own half of "the program's folder": $XDG_DATA_HOME/zarvela.
[[nodiscard]] QString UserData();
[[nodiscard]] QString Cache();
[[nodiscard]] QString RegistryFile();
// Folders named `name` in the order in which they are searched: the user's own first, then the shipped one.
[[nodiscard]] QStringList SearchPath(const QString &name);
// The first existing file `name` in the folder `folder` of the search path; empty when there is none. `name` must be a
// plain file name: one with a path separator is never found.
[[nodiscard]] QString Find(const QString &folder, const QString &name);

}  // namespace ProgramFolders
