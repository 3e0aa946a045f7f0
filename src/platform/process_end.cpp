#include "platform/process_end.h"

#include <csignal>

void EndProcess(qint64 process) {
  // 0 and below mean groups of processes.
  if (process > 0) ::kill(static_cast<pid_t>(process), SIGKILL);
}
