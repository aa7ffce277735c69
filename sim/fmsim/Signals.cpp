#include "fmsim/Signals.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <limits>

namespace {

static_assert(std::atomic<int>::is_always_lock_free, "the handler sets it");
std::atomic<int> caught{0};
// A pipe that is readable while a signal is remembered. The handler may run on a plug-in's thread, where it
// interrupts no wait.
int wakeUp[2] = {-1, -1};

void WakeUp() {
  // If the pipe is full, it is readable without this byte.
  [[maybe_unused]] const auto written = write(wakeUp[1], "", 1);
}

void OnSignal(int signal) {
  const int savedErrno = errno;
  int none = 0;
  if (signal != SIGINT) {
    caught = signal;
  } else {
    caught.compare_exchange_strong(none, SIGINT);
  }
  WakeUp();
  errno = savedErrno;
}

}  // namespace

void CatchSignals() {
  // Without a pipe, waits end only at their deadline.
  if (pipe(wakeUp) == 0) {
    for (const int end : wakeUp) {
      fcntl(end, F_SETFD, FD_CLOEXEC);
      fcntl(end, F_SETFL, O_NONBLOCK);
    }
  }
  struct sigaction action {};
  action.sa_handler = OnSignal;
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction former {};
    sigaction(signal, nullptr, &former);
    if (former.sa_handler != SIG_IGN) sigaction(signal, &action, nullptr);  // nohup ignores SIGHUP
  }
}

const std::atomic<int>& CaughtSignal() { return caught; }

bool ForgetInterrupt() {
  int interrupt = SIGINT;
  const bool forgotten = caught.compare_exchange_strong(interrupt, 0);
  char bytes[64];
  while (read(wakeUp[0], bytes, sizeof bytes) > 0) continue;
  if (caught != 0) WakeUp();  // another signal arrived meanwhile
  return forgotten;
}

bool WaitForInput(int descriptor, std::chrono::steady_clock::time_point deadline) {
  using std::chrono::milliseconds;
  pollfd waits[] = {{descriptor, POLLIN, 0}, {wakeUp[0], POLLIN, 0}};
  int count = 0;
  do {
    const auto left = std::chrono::ceil<milliseconds>(deadline - std::chrono::steady_clock::now()).count();
    count = poll(waits, 2, static_cast<int>(std::clamp<long long>(left, 0, std::numeric_limits<int>::max())));
  } while (count < 0 && errno == EINTR);
  return count > 0 && waits[0].revents != 0;
}
