// The end of a thread's stack, from the system's thread library.
#pragma once

#include <cstddef>
#include <cstdint>

namespace calc {

/// The most of a stack that is used, in bytes: an unlimited stack has no reliable end.
inline constexpr std::size_t kMostStack = 8 * 1024 * 1024;

/// The lowest address of its stack that the calling thread may use, at most kMostStack from the stack's start. Slow on
/// Linux, where the main thread's limit is read from the process's memory map.
std::uintptr_t StackEnd();

}  // namespace calc
