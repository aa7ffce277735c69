// The clock of the code under test: the real one, which a test can set forward.
#pragma once

#include <cstdint>

/// Any thread.
void AdvanceClock(std::int64_t milliseconds);
