// A whole design at a glance, as JSON for programs.
#pragma once

#include <nlohmann/json.hpp>

#include "designs/DesignCache.h"

namespace service {

/// The table occurrences, relationships and notes of the relationships graph.
nlohmann::ordered_json DescribeGraph(const solution::Design& design);

/// How many elements of each kind there are, and those that deserve a look.
nlohmann::ordered_json DescribeReport(const OpenedDesign& opened);

}  // namespace service
