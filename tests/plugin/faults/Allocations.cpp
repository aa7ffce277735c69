#include "plugin/faults/Allocations.h"

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace {

constexpr std::ptrdiff_t kNever = PTRDIFF_MAX;

std::atomic<std::ptrdiff_t> g_left = kNever, g_live = 0;

}  // namespace

void allocations::FailAfter(std::ptrdiff_t after) { g_left = after; }
bool allocations::TakeBack() { return g_left.exchange(kNever) >= 0; }
std::ptrdiff_t allocations::Live() { return g_live; }

int allocations::FailInTurn(const std::function<std::string()>& attempt,
                            const std::function<void(const std::string&)>& check) {
  for (int after = 0;; ++after) {
    std::string result = "ERROR: caught";
    FailAfter(after);
    try {
      result = attempt();
    } catch (const std::bad_alloc&) {
    }
    const bool failed = !TakeBack();
    check(result);
    if (!failed) return after;
  }
}

// Replaces the program's allocation functions; its libraries use them, too.
void* operator new(std::size_t size) {
  void* const block = g_left-- == 0 ? nullptr : std::malloc(size > 0 ? size : 1);
  if (block == nullptr) throw std::bad_alloc();
  ++g_live;
  return block;
}

void operator delete(void* block) noexcept {
  if (block != nullptr) --g_live;
  std::free(block);
}

void operator delete(void* block, std::size_t) noexcept { operator delete(block); }
