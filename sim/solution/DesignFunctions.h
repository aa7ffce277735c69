// FileMaker's design functions and ExecuteSQL over the open files.
#pragma once

#include <string>
#include <vector>

#include "calc/Environment.h"
#include "solution/HostBehaviour.h"
#include "solution/Solution.h"

namespace sim {

struct Window {
  std::u16string name;
  const Solution* solution = nullptr;
};

/// What the design functions look at; owned by the application.
struct OpenFiles {
  std::vector<const Solution*> files;  ///< in the order of opening
  std::vector<Window> windows;         ///< front to back
};

/// The design functions, in the context of the file `current` (nullptr: none). `files`, `behaviour` and `current` must
/// outlive the functions.
std::vector<calc::HostFunction> DesignFunctions(const OpenFiles& files, const Solution* const& current,
                                                const HostBehaviour& behaviour);

}  // namespace sim
