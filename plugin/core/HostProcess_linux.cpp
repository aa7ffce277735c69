#include "core/HostProcess_linux.h"

#include <pthread.h>
#include <sched.h>

#include <initializer_list>

SignalsBlocked::SignalsBlocked() {
  sigset_t all;
  sigfillset(&all);
  for (const int fault : {SIGSEGV, SIGBUS, SIGILL, SIGFPE}) sigdelset(&all, fault);
  pthread_sigmask(SIG_SETMASK, &all, &before_);
}

SignalsBlocked::~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

void ScheduleAsBatch() {
  const sched_param none{};
  pthread_setschedparam(pthread_self(), SCHED_BATCH, &none);
}
