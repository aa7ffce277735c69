#include "console/EventHub.h"

namespace service {

bool EventHub::HasRoomLocked() {
  std::erase_if(listeners_, [](const auto& listener) { return listener.expired(); });
  return !hasEnded_ && listeners_.size() < kMost;
}

bool EventHub::HasRoom() {
  const std::lock_guard lock(mutex_);
  return HasRoomLocked();
}

bool EventHub::Join(const std::shared_ptr<EventListener>& listener) {
  const std::lock_guard lock(mutex_);
  if (!HasRoomLocked()) return false;
  listeners_.push_back(listener);
  return true;
}

void EventHub::Fire(Topic topic) {
  const std::lock_guard lock(mutex_);
  for (const auto& entry : listeners_) {
    if (const auto listener = entry.lock()) listener->Report(topic);
  }
}

void EventHub::End() {
  const std::lock_guard lock(mutex_);
  hasEnded_ = true;
  for (const auto& entry : listeners_) {
    if (const auto listener = entry.lock()) listener->End();
  }
  listeners_.clear();
}

}  // namespace service
