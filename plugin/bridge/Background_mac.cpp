// Background work on the system's global queue.
#include <dispatch/dispatch.h>

#include <memory>
#include <new>
#include <utility>

#include "bridge/Background.h"
#include "core/KeepLoaded.h"

namespace {

using Job = std::function<void()>;

void Run(void* context) {
  const std::unique_ptr<Job> job(static_cast<Job*>(context));
  try {
    (*job)();
  } catch (...) {  // the job reports its own failures
  }
}

}  // namespace

void PrepareForUnload() { KeepPluginLoaded(); }

void bg(std::function<void()> job) noexcept {
  Job* kept = new (std::nothrow) Job(std::move(job));
  if (kept != nullptr) dispatch_async_f(dispatch_get_global_queue(DISPATCH_QUEUE_PRIORITY_DEFAULT, 0), kept, Run);
}
