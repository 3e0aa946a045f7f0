#include "app/command_line.h"

#include "config/options.h"
#include "platform/hand_off.h"

QStringList Arguments(int argc, char **argv) {
  QStringList arguments;
  for (int i = 1; i < argc; ++i) arguments.append(QString::fromLocal8Bit(argv[i]));
  return arguments;
}

TCommandLine ReadArguments(const QStringList &arguments) {
  TCommandLine entry;
  if (arguments.size() != 1) return entry;
  const QString &only = arguments.first();
  if (only == QLatin1String("--undef") || only == QLatin1String("--uninstall")) {
    entry.action = TCommandLine::TAction::Unregister;
    return entry;
  }
  if (only == QLatin1String("--help") || only == QLatin1String("--version")) {
    entry.action = only == QLatin1String("--help") ? TCommandLine::TAction::Help : TCommandLine::TAction::Version;
    return entry;
  }
  entry.forceNewInstance = only == QLatin1String("--new");
  // A file of the working directory is named in full, since the folder means nothing later on.
  if (!entry.forceNewInstance) entry.argument = FullFileName(only);
  entry.isUnknownSwitch = entry.argument == only && only.startsWith(QLatin1String("--"));
  return entry;
}

TCommandLine ReadCommandLine(const QStringList &arguments, TRegistryStore &store) {
  TCommandLine entry = ReadArguments(arguments);
  if (entry.action == TCommandLine::TAction::Run && !entry.forceNewInstance) {
    entry.forceNewInstance = TZVOptions(store).Get(Setting::AllowMultiInstance);
  }
  return entry;
}
