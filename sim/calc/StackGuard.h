// Keeps recursion from running off the end of the thread's stack.
#pragma once

#include <cstddef>

namespace calc {

/// Bytes left of this thread's stack, of which no more than 8 MB count.
std::size_t StackLeft();

/// What must stay free for everything that a step of the engine calls: host functions, ICU, the destruction of trees.
inline constexpr std::size_t kStackReserve = 512 * 1024;

}  // namespace calc
