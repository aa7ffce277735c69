#include "calc/StackGuard.h"

#include "calc/StackEnd.h"

namespace calc {

std::size_t StackLeft() {
  thread_local const std::uintptr_t end = StackEnd();
  // Not the address of a variable: sanitizers may keep variables elsewhere.
  const auto here = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
  return here > end ? here - end : 0;
}

}  // namespace calc
