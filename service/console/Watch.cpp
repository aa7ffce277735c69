#include "console/Watch.h"

namespace service {

Watch::Watch(Context& context) : context_(context), thread_([this] { Run(); }) {}

Watch::~Watch() {
  {
    const std::lock_guard lock(mutex_);
    end_ = true;
  }
  ended_.notify_one();
  thread_.join();
}

void Watch::Run() {
  std::unique_lock lock(mutex_);
  while (!ended_.wait_for(lock, context_.times.watch, [this] { return end_; })) {
    lock.unlock();
    try {
      Look();
    } catch (const std::exception&) {  // the database fails; whoever asks for something is answered with the reason
    }
    lock.lock();
  }
}

void Watch::Look() {
  const bool hasPlugin = context_.lastPoll.IsRecent(context_.times.poll);
  if (hasPlugin != hasPlugin_) context_.events.Fire(Change::kStatus);
  hasPlugin_ = hasPlugin;
  context_.store.Expire();
}

}  // namespace service
