#include "app/terminal_help.h"

#include <cstdio>

#include "app/command_line.h"
#include "config/language.h"
#include "config/options.h"
#include "platform/program_folders.h"

namespace {

struct TSwitch {
  const char *name;
  TTextKey text;
};

constexpr TSwitch Switches[] = {
    {"--new", {"COMMAND_LINE", "New"}},         {"--undef", {"COMMAND_LINE", "Undef"}},
    {"--uninstall", {"COMMAND_LINE", "Undef"}}, {"--help", {"COMMAND_LINE", "Help"}},
    {"--version", {"COMMAND_LINE", "Version"}},
};

void Print(std::FILE *to, const QString &text) {
  std::fprintf(to, "%s\n", text.toLocal8Bit().constData());
}

}  // namespace

void TellOnTerminal(int argc, char **argv) {
  TRegistryStore store(ProgramFolders::RegistryFile(), TRegistryStore::TReadOnly());
  TZVOptions options(store);
  TLanguage language;
  language.Load(options);
  const QStringList arguments = Arguments(argc, argv);
  const TCommandLine entry = ReadArguments(arguments);
  if (entry.isUnknownSwitch) {
    Print(stderr, language.Text("COMMAND_LINE", "Unknown").arg(arguments.first()));
  } else if (entry.action == TCommandLine::TAction::Version) {
    Print(stdout, QStringLiteral("Zarvela " ZARVELA_VERSION));
  } else {
    Print(stdout, language.Text("COMMAND_LINE", "Usage"));
    for (const TSwitch &each : Switches) {
      Print(stdout, QStringLiteral("  %1 %2").arg(QLatin1String(each.name), -12).arg(language.Text(each.text)));
    }
  }
}
