#include "app/program_entry.h"

#include <QApplication>
#include <QFileInfo>
#include <QIcon>

#include "app/main_window.h"
#include "config/shell_association.h"
#include "platform/program_folders.h"
#include "platform/termination_signals.h"

namespace {

void SetNames() {
  QApplication::setApplicationName(QStringLiteral("zarvela"));
  QApplication::setApplicationDisplayName(QStringLiteral("Zarvela"));
  QApplication::setApplicationVersion(QStringLiteral(ZARVELA_VERSION));
  QApplication::setDesktopFileName(QStringLiteral("zarvela"));
}

// A file of the working directory is named in full, since the folder means nothing later on.
QString Absolute(const QString &argument) {
  const QFileInfo file(argument);
  return !argument.isEmpty() && file.isFile() ? file.absoluteFilePath() : argument;
}

}  // namespace

TProgramEntry ReadCommandLine(const QStringList &arguments, TRegistryStore &store) {
  TProgramEntry entry;
  if (arguments.size() == 1) {
    const QString &only = arguments.first();
    if (only == QLatin1String("--undef") || only == QLatin1String("--uninstall")) {
      entry.action = TProgramEntry::TAction::Unregister;
      return entry;
    }
    entry.forceNewInstance = only == QLatin1String("--new");
    if (!entry.forceNewInstance) entry.argument = Absolute(only);
  }
  if (!entry.forceNewInstance) entry.forceNewInstance = TZVOptions(store).Get(Setting::AllowMultiInstance);
  return entry;
}

int RunProgram(int argc, char **argv) {
  QStringList arguments;
  for (int i = 1; i < argc; ++i) arguments.append(QString::fromLocal8Bit(argv[i]));
  TRegistryStore store(ProgramFolders::RegistryFile());
  const TProgramEntry entry = ReadCommandLine(arguments, store);
  if (entry.action == TProgramEntry::TAction::Unregister) {
    TShellAssociation(store).SetAll(false);
    return 0;
  }
  if (!entry.argument.isEmpty()) TZVOptions(store).Set(Setting::CommandLine, entry.argument);

  SetNames();
  TEngine::RegisterSchemes();
  QApplication application(argc, argv);
  QApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/zarvela.svg")));
  TfrmMain window(store, store.IsWritable() ? QString() : entry.argument);
  const TTerminationSignals signalsToEnd;
  QObject::connect(&signalsToEnd, &TTerminationSignals::EndRequested, &window, &TfrmMain::CloseWithoutAsking);
  QObject::connect(&application, &QGuiApplication::commitDataRequest, &window, &TfrmMain::CloseWithoutAsking);
  window.show();
  return QApplication::exec();
}
