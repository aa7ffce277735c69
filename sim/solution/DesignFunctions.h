// FileMaker's design functions and ExecuteSQL over the open files.
#pragma once

#include <functional>
#include <vector>

#include "sim/calc/Environment.h"
#include "sim/solution/Solution.h"

namespace sim {

/// How closely the simulated host follows the real one where that hides something from a test.
struct HostBehaviour {
  bool allDesignFunctions = true;  ///< false: PrivilegeSetNames and CustomFunctionNames do not exist, as in FileMaker
  bool lenientSql = false;         ///< true: a doubled quote pair around a literal is accepted as one pair
};

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
