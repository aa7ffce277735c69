// Where a thread's stack ends, as the system's thread library knows it.
#pragma once

#include <cstddef>
#include <cstdint>

namespace calc {

/// What is used of a larger stack. One without a limit has no end to rely on.
inline constexpr std::size_t kMostStack = 8 * 1024 * 1024;

/// The lowest address that the calling thread may use of its stack, at most kMostStack from its start. Slow on Linux,
/// where the main thread's takes a look at the process's memory map.
std::uintptr_t StackEnd();

}  // namespace calc
