// Get ( ... ) in the simulated application.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "application/Context.h"

namespace sim {

/// nullopt when there is no such parameter.
std::optional<calc::Value> EvaluateGet(std::u16string_view parameter, const Context& context);

/// All parameters as FileMaker spells them, sorted.
std::vector<std::u16string> GetParameterNames();

/// The layout that a file opens with: the one named in its options, else the first. nullptr when it has none.
const Layout* StartLayout(const Solution& solution);

/// The privilege set in force: full access where a script runs with it, else the account's. nullptr when there is none.
const PrivilegeSet* CurrentPrivilegeSet(const Context& context);

}  // namespace sim
