// Recently used designs, so that browsing in a design does not read it again for every page.
#pragma once

#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <optional>

#include "design/Design.h"
#include "references/ReferenceIndex.h"

namespace service {

/// A design and the references in it. Safe on any thread.
class OpenedDesign {
 public:
  explicit OpenedDesign(std::unique_ptr<const solution::Design> design) : design_(std::move(design)) {}

  const solution::Design& design() const { return *design_; }

  /// Found at the first call.
  const solution::ReferenceIndex& references() const;

 private:
  std::unique_ptr<const solution::Design> design_;
  mutable std::once_flag once_;
  mutable std::optional<solution::ReferenceIndex> references_;
};

/// The most recently used designs by id, limited in number and in total size; the last one is kept whatever its size.
/// Safe on any thread.
class DesignCache {
 public:
  using Read = std::function<std::unique_ptr<const solution::Design>()>;

  /// The design `id`, whose export has `bytes`. Calls `read` if it is not in the cache; other threads that ask for it
  /// meanwhile wait instead of reading it themselves. Passes on what `read` throws. A forgotten design exists as long
  /// as it is in use.
  std::shared_ptr<const OpenedDesign> Open(std::int64_t id, std::int64_t bytes, const Read& read);

  /// Forgets the designs for which `isGone` returns true.
  void Forget(const std::function<bool(std::int64_t id)>& isGone);

 private:
  struct Slot {
    std::int64_t id = 0, bytes = 0;
    std::mutex mutex;  // of `design`
    std::shared_ptr<const OpenedDesign> design;
  };
  std::shared_ptr<Slot> Touch(std::int64_t id, std::int64_t bytes);

  std::mutex mutex_;
  std::list<std::shared_ptr<Slot>> slots_;  // the most recently used first
};

}  // namespace service
