#include "platform/started_programs.h"

#include <unistd.h>

#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

namespace {

constexpr int StartTime = 3000;  // milliseconds; what is longer about it is stuck

// A process that is let go, and not ended, when nobody looks after it any more.
class TLoneProcess final : public QProcess {
 public:
  explicit TLoneProcess(QObject *parent) : QProcess(parent) {
    // Its own session: what ends this program from a terminal is not meant for it.
    setChildProcessModifier([] { ::setsid(); });
    setProcessChannelMode(QProcess::ForwardedChannels);
    setStandardInputFile(QProcess::nullDevice());
    m_time.start();
  }
  ~TLoneProcess() override {
    if (state() != QProcess::NotRunning) setProcessState(QProcess::NotRunning);
  }
  [[nodiscard]] bool IsWatched() const { return !m_time.hasExpired(TStartedPrograms::WatchTime); }

 private:
  QElapsedTimer m_time;
};

}  // namespace

TStartedPrograms::~TStartedPrograms() = default;

bool TStartedPrograms::Start(const QStringList &command) {
  if (command.isEmpty()) return false;
  const QString program = QStandardPaths::findExecutable(command.first());
  if (program.isEmpty()) return false;
  auto *process = new TLoneProcess(this);
  process->start(program, command.mid(1));
  if (!process->waitForStarted(StartTime)) {
    delete process;
    return false;
  }
  connect(process, &QProcess::finished, this, [this, process](int code, QProcess::ExitStatus status) {
    if (process->IsWatched() && (code != 0 || status != QProcess::NormalExit)) {
      Q_EMIT Failed(QFileInfo(process->program()).fileName());
    }
    process->deleteLater();
  });
  return true;
}
