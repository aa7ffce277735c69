// The program's memory, counted, and able to run out once. Any thread.
#pragma once

#include <cstddef>

namespace allocations {

/// Lets the allocation `after` allocations from now fail.
void FailAfter(std::ptrdiff_t after);
/// Takes it back; false when it has happened.
bool TakeBack();

/// Blocks not yet freed.
std::ptrdiff_t Live();

}  // namespace allocations
