#include <dlfcn.h>

#include <cstdio>
#include <QFile>
#include <QFileInfo>

#include "app/command_line.h"
#include "app/module/program_module.h"
#include "platform/hand_off.h"
#include "platform/instance_lock.h"
#include "platform/program_folders.h"
#include "store/registry_store.h"

namespace {

// Beside the program in a build; in the libraries' folder of an installation.
constexpr const char *ModulePlaces[] = {"/libzarvela.so", "/../" ZARVELA_LIBRARY_FOLDER "/zarvela/libzarvela.so"};

// The settings are only opened for a start that finds another instance: what is wrong with them is the business of the
// process that shows a window.
bool MayRunBeside(const QStringList &arguments) {
  if (ReadArguments(arguments).forceNewInstance) return true;
  TRegistryStore store(ProgramFolders::RegistryFile(), TRegistryStore::TReadOnly());
  return ReadCommandLine(arguments, store).forceNewInstance;
}

enum class TStart { Run, Ask, End };

// Whether this process has to run, or another instance has got what it was started with. The user decides where another
// one is in the way and does not answer.
TStart Decide(const QStringList &arguments, TInstanceLock &lock) {
  if (ReadArguments(arguments).action == TCommandLine::TAction::Unregister) return TStart::Run;
  if (lock.CreateInstanceMutex() || !lock.IsUsable() || MayRunBeside(arguments)) return TStart::Run;
  switch (HandOffCommandLine(lock, arguments)) {
    case THandOff::BecameFirst:
      return TStart::Run;
    case THandOff::Nobody:
      return TStart::Ask;
    case THandOff::Delivered:
      break;
  }
  return TStart::End;
}

// A function of the module; tells on the terminal why there is none.
void *FromModule(const char *name, const char *program) {
  const QString folder = QFileInfo(QFile::symLinkTarget(QStringLiteral("/proc/self/exe"))).path();
  for (const char *place : ModulePlaces) {
    const QString path = folder + QLatin1String(place);
    if (!QFileInfo::exists(path)) continue;
    void *module = ::dlopen(QFile::encodeName(path).constData(), RTLD_LAZY | RTLD_GLOBAL);
    void *function = module != nullptr ? ::dlsym(module, name) : nullptr;
    if (function == nullptr) std::fprintf(stderr, "%s: %s\n", program, ::dlerror());
    return function;
  }
  std::fprintf(stderr, "%s: libzarvela.so?\n", program);
  return nullptr;
}

int RunModule(int argc, char **argv, TInstanceLock &lock, bool ask) {
  void *run = FromModule(ZarvelaRunName, argv[0]);
  return run != nullptr ? reinterpret_cast<TZarvelaRun *>(run)(argc, argv, &lock, ask) : 1;
}

}  // namespace

int main(int argc, char **argv) {
  const QStringList arguments = Arguments(argc, argv);
  const TCommandLine entry = ReadArguments(arguments);
  if (entry.IsForTerminal()) {
    void *tell = FromModule(ZarvelaTellName, argv[0]);
    if (tell == nullptr) return 1;
    reinterpret_cast<TZarvelaTell *>(tell)(argc, argv);
    if (entry.action != TCommandLine::TAction::Run) return 0;
  }
  TInstanceLock lock;
  const TStart start = Decide(arguments, lock);
  return start != TStart::End ? RunModule(argc, argv, lock, start == TStart::Ask) : 0;
}
