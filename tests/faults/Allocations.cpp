#include "tests/faults/Allocations.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

constexpr std::size_t kNever = static_cast<std::size_t>(-1);

std::atomic<std::size_t> g_left = kNever;
std::atomic<std::ptrdiff_t> g_live = 0;

bool IsTheOneToFail() {
  std::size_t left = g_left;
  while (left != kNever) {
    if (g_left.compare_exchange_weak(left, left > 0 ? left - 1 : kNever)) return left == 0;
  }
  return false;
}

}  // namespace

void allocations::FailAfter(std::size_t after) { g_left = after; }
bool allocations::TakeBack() { return g_left.exchange(kNever) != kNever; }
std::ptrdiff_t allocations::Live() { return g_live; }

// The program's own, which its libraries use too.
void* operator new(std::size_t size) {
  if (IsTheOneToFail()) throw std::bad_alloc();
  void* const block = std::malloc(size > 0 ? size : 1);
  if (block == nullptr) throw std::bad_alloc();
  ++g_live;
  return block;
}

void operator delete(void* block) noexcept {
  if (block != nullptr) --g_live;
  std::free(block);
}

void operator delete(void* block, std::size_t) noexcept { operator delete(block); }
