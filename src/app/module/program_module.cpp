#include "app/module/program_module.h"

#include "app/program_entry.h"
#include "app/terminal_help.h"

int ZarvelaRun(int argc, char **argv, TInstanceLock *lock, bool ask) {
  return RunProgram(argc, argv, *lock, ask);
}

void ZarvelaTell(int argc, char **argv) {
  TellOnTerminal(argc, argv);
}
