// Where the simulated host differs from FileMaker.
#pragma once

#include <functional>
#include <string>

namespace sim {

/// How closely the simulated host follows the real one where tests need both ways.
struct HostBehaviour {
  bool allDesignFunctions = true;  ///< false: PrivilegeSetNames and CustomFunctionNames do not exist, as in FileMaker
  bool lenientSql = false;         ///< true: a doubled quote pair around a literal is accepted as one pair
  /// Called with one line when something fails because the simulator does not support it; may be empty.
  std::function<void(const std::string& line)> report = {};
};

}  // namespace sim
