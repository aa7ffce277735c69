// A small design with everything whose listing has a rule, as the versions of FileMaker export it.
#pragma once

#include <string>
#include <string_view>

#include "solution/Solution.h"

/// The oldest, the newest, and the one between them that differs most.
inline constexpr std::string_view kFormatVersions[] = {"2.0.0.0", "2.2.2.0", "2.2.3.4"};

/// UTF-8, without a byte-order mark.
std::string SampleExport(std::string_view version);

sim::Solution SampleSolution();
