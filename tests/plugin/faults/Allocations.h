// The program's memory, counted, and able to run out once. Any thread.
#pragma once

#include <cstddef>
#include <functional>
#include <string>

namespace allocations {

/// Lets the allocation `after` allocations from now fail.
void FailAfter(std::ptrdiff_t after);
/// Takes it back; false when it has happened.
bool TakeBack();

/// Calls `attempt` with each of its allocations failing in turn, on whichever thread, and once without a failure; after
/// each call, `check` with its result, "ERROR: caught" when it was std::bad_alloc. Returns the number of failures.
int FailInTurn(const std::function<std::string()>& attempt, const std::function<void(const std::string&)>& check);

/// Blocks not yet freed.
std::ptrdiff_t Live();

}  // namespace allocations
