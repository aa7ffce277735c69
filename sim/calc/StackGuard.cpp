// The stack's end as the thread library knows it.
#include "calc/StackGuard.h"

#include <pthread.h>

#include <cstdint>

namespace calc {
namespace {

// What is used of a larger stack. One without a limit has no end that could be relied on.
constexpr std::size_t kMostStack = 8 * 1024 * 1024;
// Where the thread library cannot tell, as without /proc.
constexpr std::size_t kAssumedStack = 1024 * 1024;

std::uintptr_t FindStackEnd() {
  pthread_attr_t attributes;
  if (pthread_getattr_np(pthread_self(), &attributes) != 0) {
    return reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0)) - kAssumedStack;
  }
  void* lowest = nullptr;
  std::size_t size = 0;
  pthread_attr_getstack(&attributes, &lowest, &size);
  pthread_attr_destroy(&attributes);
  return reinterpret_cast<std::uintptr_t>(lowest) + (size > kMostStack ? size - kMostStack : 0);
}

}  // namespace

std::size_t StackLeft() {
  // Asking is slow: for the main thread it reads the process's memory map.
  thread_local const std::uintptr_t end = FindStackEnd();
  // Not the address of a variable: sanitizers may keep variables elsewhere.
  const auto here = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
  return here > end ? here - end : 0;
}

}  // namespace calc
