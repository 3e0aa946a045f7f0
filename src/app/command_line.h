#pragma once

#include <QString>
#include <QStringList>

class TRegistryStore;

// What the command line asks for, decided before any window or the engine exists.
struct TCommandLine {
  enum class TAction {
    Run,
    Unregister,
    Help,     // what it is called with, on the terminal
    Version,  // likewise
  };

  TAction action = TAction::Run;
  bool forceNewInstance = false;
  // Opened once by the delayed start; empty when there is none.
  QString argument;
  // The argument looks like a switch and is none: it is taken for an address all the same.
  bool isUnknownSwitch = false;

  // Whether there is something to be said on the terminal.
  [[nodiscard]] bool IsForTerminal() const {
    return action == TAction::Help || action == TAction::Version || isUnknownSwitch;
  }
};

// The process's arguments without the program's name.
[[nodiscard]] QStringList Arguments(int argc, char **argv);

// Reads the arguments (without the program's name). A switch is only recognised when it stands alone; with two
// arguments and more none of them means anything.
[[nodiscard]] TCommandLine ReadArguments(const QStringList &arguments);

// The same with the setting AllowMultiInstance, which does what "--new" does.
[[nodiscard]] TCommandLine ReadCommandLine(const QStringList &arguments, TRegistryStore &store);
