// Overviews of a whole design, as JSON.
#pragma once

#include <nlohmann/json.hpp>

#include "designs/DesignCache.h"

namespace service {

/// The table occurrences, relationships and notes of the relationships graph.
nlohmann::ordered_json DescribeGraph(const solution::Design& design);

/// The number of elements of each kind, and those that need attention: unused, broken references, full access.
nlohmann::ordered_json DescribeReport(const OpenedDesign& opened);

}  // namespace service
