#pragma once

#include <functional>
#include <QString>

// File names that come from servers.
namespace FileNames {

// A name that is safe on any file system: no folders, no control or direction characters, no names that are reserved
// somewhere, not hidden, and short enough to get a number or an ending appended. Over-long names lose their middle and
// keep their ending. `fallback` is used when nothing is left.
[[nodiscard]] QString Safe(const QString &suggested, const QString &fallback);

// "folder/name", or with the first number that makes it free: "folder/name (1).ext". `isTaken` tells of paths that do
// not exist yet but will, if any do.
[[nodiscard]] QString FreePath(const QString &folder, const QString &name,
                               const std::function<bool(const QString &)> &isTaken);

// Where the engine gathers the file of that path until it is complete.
[[nodiscard]] QString PartialOf(const QString &path);

// A name of its own for the file of that path, in its folder, for as long as it has no place; file dialogs do not show
// it.
[[nodiscard]] QString HiddenPath(const QString &path);

// True for files that run code when they are opened: programs, scripts, starters, installers, and whatever has the
// executable permission.
[[nodiscard]] bool IsExecutable(const QString &path);

}  // namespace FileNames
