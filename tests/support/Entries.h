// How many threads or descriptors there are.
#pragma once

#include <cstddef>
#include <filesystem>
#include <iterator>

/// The entries of `directory`: "/proc/self/task" has one for each thread, "/proc/self/fd" one for each descriptor, one
/// of them for this look.
inline std::ptrdiff_t EntriesOf(const char* directory) {
  return std::distance(std::filesystem::directory_iterator(directory), std::filesystem::directory_iterator());
}
