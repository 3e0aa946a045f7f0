#pragma once

#include <QString>
#include <QStringList>

class TRegistryStore;

// What the command line asks for, decided before any window or the engine exists.
struct TCommandLine {
  enum class TAction { Run, Unregister };

  TAction action = TAction::Run;
  bool forceNewInstance = false;
  // Opened once by the delayed start; empty when there is none.
  QString argument;
};

// The process's arguments without the program's name.
[[nodiscard]] QStringList Arguments(int argc, char **argv);

// Reads the arguments (without the program's name). A switch is only recognised when it stands alone; with two
// arguments and more none of them means anything.
[[nodiscard]] TCommandLine ReadArguments(const QStringList &arguments);

// The same with the setting AllowMultiInstance, which does what "--new" does.
[[nodiscard]] TCommandLine ReadCommandLine(const QStringList &arguments, TRegistryStore &store);
