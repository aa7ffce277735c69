// A small design with one case for every rule about lists, as different versions of FileMaker export it.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "export/Document.h"
#include "solution/SolutionReader.h"

/// The oldest, the newest, and the one between them that differs most.
inline constexpr std::string_view kFormatVersions[] = {"2.0.0.0", "2.2.2.0", "2.2.3.4"};

/// The bytes of the sample's export in a version of the format.
inline std::string SampleExport(std::string_view version) {
  return solution::ReadFile(SALES_EXPORTS "/Sales-" + std::string(version) + ".xml");
}

inline sim::Solution SampleSolution() {
  sim::Solution solution;
  std::string error;
  EXPECT_TRUE(sim::ReadSolutionBytes(SampleExport("2.2.3.4"), "Sales.xml", solution, error)) << error;
  return solution;
}
