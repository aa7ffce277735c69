// What the stand-ins of the system's interfaces share. A call that the real system would not survive ends the test.
#pragma once

#include <string>

namespace StandIn {

[[noreturn]] void Misuse(const std::string& what);

/// Foundation's objects alive, less those at the first call; autoreleased ones count until their pool is drained.
int FoundationObjects();

}  // namespace StandIn
