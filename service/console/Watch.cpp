#include "console/Watch.h"

#include <exception>

#include "store/Elapsed.h"

namespace service {
namespace {

constexpr std::chrono::seconds kDay = std::chrono::hours(24);

}  // namespace

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
    } catch (const std::exception&) {  // the database fails; requests are answered with the reason
    }
    lock.lock();
  }
}

void Watch::Look() {
  const bool hasPlugin = context_.lastPoll.IsRecent(context_.times.poll);
  if (hasPlugin != hasPlugin_) context_.events.Fire(Topic::kStatus);
  hasPlugin_ = hasPlugin;
  context_.store.Expire();
  if (context_.store.OthersHaveWritten()) context_.events.Fire(Topic::kDesigns);  // a label
  DeleteWhatIsOld();
}

void Watch::DeleteWhatIsOld() {
  const std::int64_t now = context_.store.Now();
  if (IsWithin(lastDeletion_, std::chrono::milliseconds(kDay).count(), now)) return;
  lastDeletion_ = now;
  context_.store.GiveSpaceBack();
  const Retention retention = context_.store.GetRetention();
  if (!retention.days) return;
  const Pruned pruned = context_.store.Prune(*retention.days * kDay, retention.keep.value_or(0));
  if (pruned.commands + pruned.records == 0) return;
  context_.storeChanged();
  context_.Log("deleted what is older than " + std::to_string(*retention.days) + " days: " +
               std::to_string(pruned.commands) + " commands, " + std::to_string(pruned.records) + " records");
}

}  // namespace service
