// What happens in the service only because time passes.
#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>

#include "Routes.h"

namespace service {

/// Looks once a second, on a thread of its own, from construction to destruction: commands expire, and a plug-in that
/// asked for commands does so no longer, or again. When it begins, and then once a day, old data is deleted.
class Watch {
 public:
  /// `context` must outlive it.
  explicit Watch(Context& context);
  ~Watch();

 private:
  void Run();
  void Look();
  void DeleteWhatIsOld();

  Context& context_;
  bool hasPlugin_ = false;
  std::int64_t nextDeletion_ = 0;  ///< by the store's clock
  std::mutex mutex_;
  std::condition_variable ended_;
  bool end_ = false;
  std::thread thread_;
};

}  // namespace service
