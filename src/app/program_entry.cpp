#include "app/program_entry.h"

#include <QApplication>
#include <QIcon>

#include "app/beside_question.h"
#include "app/main_window.h"
#include "browser/engine/engine.h"
#include "browser/engine/engine_flags.h"
#include "config/language.h"
#include "config/registry_paths.h"
#include "config/shell_association.h"
#include "platform/desktop_defaults.h"
#include "platform/desktop_wishes.h"
#include "platform/instance_channel.h"
#include "platform/program_folders.h"
#include "platform/termination_signals.h"
#include "ui/control_style.h"
#include "ui/motion.h"

namespace {

// Milliseconds for the desktop's tools to take the registration back.
constexpr int UnregisterPatience = 20000;

void SetNames() {
  QApplication::setApplicationName(QStringLiteral("zarvela"));
  QApplication::setApplicationDisplayName(QStringLiteral("Zarvela"));
  QApplication::setApplicationVersion(QStringLiteral(ZARVELA_VERSION));
  QApplication::setDesktopFileName(QStringLiteral("zarvela"));
}

bool MayRunBeside(TRegistryStore &store) {
  TZVOptions options(store);
  TLanguage language;
  language.Load(options);
  QApplication::setLayoutDirection(language.Direction());
  return AskRunBeside(language);
}

// Where there are no settings yet, the installation has not reported itself to the update server. One whose settings
// cannot be read, or had to be set aside, may have.
void NoteFirstStart(TRegistryStore &store) {
  const bool isLost = !store.SetAsideFile().isEmpty() || store.IsInMemory();
  if (isLost || store.KnownKeyExists(TRegistryHive::CurrentUser, RegistryKey::CurrentVersion) != false) return;
  TZVOptions(store).Set(Setting::New, true);
}

void HeedDesktop() {
  const TDesktopWishes wishes = TDesktopWishes::Ask();
  Motion::SetReduced(wishes.reducedMotion);
  SetEngineFlags(wishes);
}

}  // namespace

int RunProgram(int argc, char **argv, TInstanceLock &lock, bool ask) {
  TRegistryStore store(ProgramFolders::RegistryFile());
  const TCommandLine entry = ReadArguments(Arguments(argc, argv));
  if (entry.action == TCommandLine::TAction::Unregister) {
    const QCoreApplication application(argc, argv);
    TDesktopDefaults desktop;
    TShellAssociation(store, &desktop).Unregister();
    (void)desktop.WaitForDone(UnregisterPatience);
    return 0;
  }
  SetNames();
  TEngine::RegisterSchemes();
  QApplication application(argc, argv);
  TControlStyle::Install();
  QApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/zarvela.svg")));
  if (ask && !MayRunBeside(store)) return 0;
  HeedDesktop();
  NoteFirstStart(store);
  if (!entry.argument.isEmpty()) TZVOptions(store).Set(Setting::CommandLine, entry.argument);
  TfrmMain window(store, entry.argument);
  const TTerminationSignals signalsToEnd;
  QObject::connect(&signalsToEnd, &TTerminationSignals::EndRequested, &window, &TfrmMain::CloseWithoutAsking);
  QObject::connect(&application, &QGuiApplication::commitDataRequest, &window, &TfrmMain::WriteAll);
  // Goes before the window does, so that nothing is taken in that could not be opened any more.
  TInstanceChannel channel;
  channel.Serve(lock);
  // A window that is closing takes nothing more: the other start waits and becomes the first.
  QObject::connect(&window, &TfrmMain::Closing, &channel, &TInstanceChannel::Close);
  // Behind its icon in the notification area it is no window whose end the toolkit would take for that of the program.
  QObject::connect(
      &window, &TfrmMain::Closing, &application, [] { QCoreApplication::exit(); }, Qt::QueuedConnection);
  QObject::connect(&channel, &TInstanceChannel::Received, &window, &TfrmMain::wmCopyDataDataReceived);
  window.show();
  channel.Start();
  return QApplication::exec();
}
