// What changes in the service only because time passes.
#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>

#include "http/Routes.h"

namespace service {

/// From construction to destruction, checks once a second, on its own thread, whether commands have expired, whether
/// the plug-in has stopped or resumed asking for commands, and whether another program has labelled a design. At the
/// start, and then once a day, deletes old data and returns the space of what was deleted to the disk.
class Watch {
 public:
  /// `context` must outlive this.
  explicit Watch(Context& context);
  ~Watch();

 private:
  void Run();
  void Look();
  void DeleteWhatIsOld();

  Context& context_;
  bool hasPlugin_ = false;
  std::int64_t lastDeletion_ = 0;  ///< by the store's clock
  std::mutex mutex_;
  std::condition_variable ended_;
  bool end_ = false;
  std::thread thread_;
};

}  // namespace service
