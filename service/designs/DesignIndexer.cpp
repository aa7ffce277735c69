#include "designs/DesignIndexer.h"

#include <stdexcept>

#include "designs/DesignStore.h"

namespace service {

DesignIndexer::DesignIndexer(std::string folder, std::function<void(const std::string&)> log,
                             std::function<void()> changed)
    : folder_(std::move(folder)), log_(std::move(log)), changed_(std::move(changed)), thread_([this] { Run(); }) {}

DesignIndexer::~DesignIndexer() {
  stop_ = true;
  Wake();
  thread_.join();
}

void DesignIndexer::Wake() {
  const std::lock_guard lock(mutex_);
  isWoken_ = true;
  woken_.notify_one();
}

void DesignIndexer::Run() {
  while (!stop_) {
    {
      std::unique_lock lock(mutex_);
      woken_.wait(lock, [this] { return isWoken_; });
      isWoken_ = false;
    }
    try {
      bool isBusy = false;
      DesignStore(folder_).CatchUp(stop_, [&](const std::string& name) {
        isBusy = true;
        log_("indexing " + name);
      });
      if (isBusy) log_("designs are indexed");
      changed_();
    } catch (const std::exception& error) {  // the next call of Wake tries again
      log_(std::string("designs are not indexed: ") + error.what());
    }
  }
}

}  // namespace service
