#include "app/module/program_module.h"

#include "app/program_entry.h"

int ZarvelaRun(int argc, char **argv, TInstanceLock *lock, bool ask) {
  return RunProgram(argc, argv, *lock, ask);
}
