#include "fmsim/Signals.h"

#include <poll.h>
#include <sys/eventfd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <limits>

namespace {

static_assert(std::atomic<int>::is_always_lock_free, "the handler sets it");
std::atomic<int> caught{0};
// Readable while a signal is remembered. The handler may run on a plug-in's thread, where it interrupts nobody's wait.
int wakeUp = -1;

void OnSignal(int signal) {
  const int savedErrno = errno;
  int none = 0;
  if (signal != SIGINT) {
    caught = signal;
  } else {
    caught.compare_exchange_strong(none, SIGINT);
  }
  eventfd_write(wakeUp, 1);
  errno = savedErrno;
}

}  // namespace

void CatchSignals() {
  wakeUp = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
  struct sigaction action {};
  action.sa_handler = OnSignal;
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction former {};
    sigaction(signal, nullptr, &former);
    if (former.sa_handler != SIG_IGN) sigaction(signal, &action, nullptr);  // as nohup wants it
  }
}

const std::atomic<int>& CaughtSignal() { return caught; }

bool ForgetInterrupt() {
  int interrupt = SIGINT;
  const bool forgotten = caught.compare_exchange_strong(interrupt, 0);
  eventfd_t count = 0;
  eventfd_read(wakeUp, &count);
  if (caught != 0) eventfd_write(wakeUp, 1);  // one that came meanwhile
  return forgotten;
}

bool WaitForInput(int descriptor, std::chrono::steady_clock::time_point deadline) {
  using std::chrono::milliseconds;
  pollfd waits[] = {{descriptor, POLLIN, 0}, {wakeUp, POLLIN, 0}};
  int count = 0;
  do {
    const auto left = std::chrono::ceil<milliseconds>(deadline - std::chrono::steady_clock::now()).count();
    count = poll(waits, 2, static_cast<int>(std::clamp<long long>(left, 0, std::numeric_limits<int>::max())));
  } while (count < 0 && errno == EINTR);
  return count > 0 && waits[0].revents != 0;
}
