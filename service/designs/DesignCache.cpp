#include "designs/DesignCache.h"

#include <algorithm>

namespace service {
namespace {

// A design takes about three times the memory of its export.
constexpr std::size_t kMostDesigns = 4;
constexpr std::int64_t kMostBytes = 128 << 20;

}  // namespace

const solution::ReferenceIndex& OpenedDesign::references() const {
  std::call_once(once_, [this] { references_.emplace(solution::FindReferences(*design_)); });
  return *references_;
}

std::shared_ptr<DesignCache::Slot> DesignCache::Touch(std::int64_t id, std::int64_t bytes) {
  const std::lock_guard lock(mutex_);
  const auto isThis = [&](const auto& slot) { return slot->id == id && slot->bytes == bytes; };
  const auto found = std::find_if(slots_.begin(), slots_.end(), isThis);
  if (found != slots_.end()) {
    slots_.splice(slots_.begin(), slots_, found);
    return slots_.front();
  }
  auto slot = std::make_shared<Slot>();
  slot->id = id;
  slot->bytes = bytes;
  slots_.push_front(slot);
  std::size_t count = 0;
  std::int64_t total = 0;
  slots_.remove_if([&](const auto& kept) {
    total += kept->bytes;
    return ++count > 1 && (count > kMostDesigns || total > kMostBytes);
  });
  return slot;
}

std::shared_ptr<const OpenedDesign> DesignCache::Open(std::int64_t id, std::int64_t bytes, const Read& read) {
  const auto slot = Touch(id, bytes);
  const std::lock_guard lock(slot->mutex);
  if (slot->design == nullptr) slot->design = std::make_shared<const OpenedDesign>(read());
  return slot->design;
}

void DesignCache::Forget(const std::function<bool(std::int64_t id)>& isGone) {
  const std::lock_guard lock(mutex_);
  slots_.remove_if([&isGone](const auto& slot) { return isGone(slot->id); });
}

}  // namespace service
