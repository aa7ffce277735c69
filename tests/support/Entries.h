// Counts threads or descriptors.
#pragma once

#include <cstddef>
#include <filesystem>
#include <iterator>

/// The number of entries in `directory`. "/proc/self/task" has one for each thread, "/proc/self/fd" one for each
/// descriptor, including that of this call.
inline std::ptrdiff_t EntriesOf(const char* directory) {
  return std::distance(std::filesystem::directory_iterator(directory), std::filesystem::directory_iterator());
}
