#include <pthread.h>

#include <algorithm>

#include "calc/StackEnd.h"

namespace calc {

std::uintptr_t StackEnd() {
  const auto start = reinterpret_cast<std::uintptr_t>(pthread_get_stackaddr_np(pthread_self()));
  return start - std::min(pthread_get_stacksize_np(pthread_self()), kMostStack);
}

}  // namespace calc
