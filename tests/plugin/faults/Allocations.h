// Counts the program's memory, and makes it run out once. Any thread.
#pragma once

#include <cstddef>
#include <functional>
#include <string>

namespace allocations {

/// Makes the allocation `after` allocations from now fail.
void FailAfter(std::ptrdiff_t after);
/// Cancels the failure; false if it has already happened.
bool TakeBack();

/// Calls `attempt` with each of its allocations failing in turn, on whichever thread, and once without a failure. After
/// each call, calls `check` with its result, or "ERROR: caught" if it threw std::bad_alloc. Returns the number of
/// failures.
int FailInTurn(const std::function<std::string()>& attempt, const std::function<void(const std::string&)>& check);

/// Blocks not yet freed.
std::ptrdiff_t Live();

}  // namespace allocations
