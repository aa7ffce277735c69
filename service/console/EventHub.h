// Reports changes to everyone who shows them.
#pragma once

#include <memory>
#include <mutex>
#include <vector>

#include "store/Topic.h"

namespace service {

class EventListener {
 public:
  virtual ~EventListener() = default;

  /// Both must return at once, and may be called on any thread. Nothing is called after End.
  virtual void Report(Topic topic) = 0;
  virtual void End() = 0;
};

/// Safe on any thread.
class EventHub {
 public:
  static constexpr std::size_t kMost = 20;  ///< listeners at the same time

  /// True if another listener may join.
  bool HasRoom();

  /// Reports all changes to `listener` as long as it exists. False when there is no room.
  bool Join(const std::shared_ptr<EventListener>& listener);

  void Fire(Topic topic);

  /// Ends all listeners, and accepts no more.
  void End();

 private:
  bool HasRoomLocked();

  std::mutex mutex_;
  bool hasEnded_ = false;
  std::vector<std::weak_ptr<EventListener>> listeners_;
};

}  // namespace service
