#include <pthread.h>

#include "calc/StackEnd.h"

namespace calc {

// Used when the thread library cannot determine the size, for example without /proc.
constexpr std::size_t kAssumedStack = 1024 * 1024;

std::uintptr_t StackEnd() {
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

}  // namespace calc
