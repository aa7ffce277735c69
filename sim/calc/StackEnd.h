// The end of a thread's stack, from the system's thread library.
#pragma once

#include <cstddef>
#include <cstdint>

namespace calc {

/// The part of a larger stack that is used. An unlimited stack has no reliable end.
inline constexpr std::size_t kMostStack = 8 * 1024 * 1024;

/// The lowest address that the calling thread may use of its stack, at most kMostStack from its start. Slow on Linux,
/// where the main thread's limit is read from the process's memory map.
std::uintptr_t StackEnd();

}  // namespace calc
