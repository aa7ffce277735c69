#include "mcp/Call.h"

namespace service::mcp {

bool Call::Pause(std::chrono::milliseconds duration) {
  std::unique_lock lock(mutex_);
  changed_.wait_for(lock, duration, [this] { return isCancelled_ || isEnding_; });
  if (isCancelled_) throw Cancelled();
  return !isEnding_;
}

void Call::Check() {
  if (IsCancelled()) throw Cancelled();
}

void Call::ShowProgress(double progress, const std::string& message) {
  if (token_.is_null() || IsCancelled()) return;
  send_(NotificationMessage("notifications/progress",
                            {{"progressToken", token_}, {"progress", progress}, {"message", message}}));
}

void Call::Cancel() {
  const std::lock_guard lock(mutex_);
  isCancelled_ = true;
  changed_.notify_all();
}

void Call::EndPauses() {
  const std::lock_guard lock(mutex_);
  isEnding_ = true;
  changed_.notify_all();
}

bool Call::IsCancelled() {
  const std::lock_guard lock(mutex_);
  return isCancelled_;
}

}  // namespace service::mcp
