#include "platform/termination_signals.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>
#include <csignal>
#include <QSocketNotifier>

namespace {

constexpr int Signals[] = {SIGTERM, SIGINT, SIGHUP};

// A signal handler may do little more than write to a descriptor; these two ends are its way into the event loop.
int s_pair[2] = {-1, -1};

void OnSignal(int) {
  const char byte = 1;
  [[maybe_unused]] const ssize_t written = ::write(s_pair[0], &byte, 1);
}

}  // namespace

TTerminationSignals::TTerminationSignals(QObject *parent) : QObject(parent) {
  if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, s_pair) != 0) return;
  m_notifier = new QSocketNotifier(s_pair[1], QSocketNotifier::Read, this);
  connect(m_notifier, &QSocketNotifier::activated, this, [this] {
    char bytes[16];
    [[maybe_unused]] const ssize_t got = ::read(s_pair[1], bytes, sizeof bytes);
    Q_EMIT EndRequested();
  });
  for (const int signal : Signals) {
    // Whoever started the program with a signal ignored (nohup) keeps it ignored.
    if (std::signal(signal, OnSignal) == SIG_IGN) std::signal(signal, SIG_IGN);
  }
}

TTerminationSignals::~TTerminationSignals() {
  for (const int signal : Signals) std::signal(signal, SIG_DFL);
  for (int &end : s_pair) {
    if (end >= 0) ::close(end);
    end = -1;
  }
}
