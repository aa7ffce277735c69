#include <dispatch/dispatch.h>

#include <thread>
#include <utility>
#include <vector>

#include "tests/mac/standin/StandIn.h"

struct dispatch_queue_s {};

namespace {

dispatch_queue_s g_global;
std::vector<std::thread> g_jobs;

}  // namespace

dispatch_queue_t dispatch_get_global_queue(long priority, unsigned long flags) {
  if (flags != 0) StandIn::Misuse("flags, which no queue has");
  return priority == DISPATCH_QUEUE_PRIORITY_DEFAULT ? &g_global : nullptr;
}

void dispatch_async_f(dispatch_queue_t queue, void* context, void (*work)(void*)) {
  if (queue != &g_global) StandIn::Misuse("another queue than that of default priority");
  g_jobs.emplace_back(work, context);
}

void StandInJoinJobs() {
  for (auto& job : std::exchange(g_jobs, {})) job.join();
}
