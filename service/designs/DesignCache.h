// Designs that were read not long ago, so that browsing in one does not read it again and again.
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

  /// Found when they are asked for first.
  const solution::ReferenceIndex& references() const;

 private:
  std::unique_ptr<const solution::Design> design_;
  mutable std::once_flag once_;
  mutable std::optional<solution::ReferenceIndex> references_;
};

/// The designs used last, by their ids: a few, and none that are large together. Safe on any thread.
class DesignCache {
 public:
  using Read = std::function<std::unique_ptr<const solution::Design>()>;

  /// The design `id`, whose export has `bytes`; calls `read` when it is not at hand. Others who ask for it meanwhile
  /// wait instead of reading it, too. Passes on what `read` throws. A forgotten design lives as long as it is in use.
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
  std::list<std::shared_ptr<Slot>> slots_;  // the one used last first
};

}  // namespace service
