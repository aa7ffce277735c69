// Keeps recursion from running off the end of the thread's stack.
#pragma once

#include <cstddef>

namespace calc {

/// Bytes left on this thread's stack, based on at most 8 MB of stack.
std::size_t StackLeft();

/// The reserve for everything that a step of the engine calls: host functions, ICU, the destruction of trees.
inline constexpr std::size_t kStackReserve = 512 * 1024;

}  // namespace calc
