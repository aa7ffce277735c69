// Exports of one and the same small file, as the versions of FileMaker save it.
#pragma once

#include <string>
#include <string_view>

inline constexpr std::string_view kFormatVersions[] = {"2.0.0.0", "2.1.0.0", "2.2.0.0", "2.2.1.0",
                                                       "2.2.2.0", "2.2.3.0", "2.2.3.4", "2.3.0.0"};

/// UTF-8, without a byte-order mark.
std::string BuildExport(std::string_view version);

/// What the file holds, in the form of Describe() in SolutionReaderTest.cpp.
extern const std::string_view kExportedDesign;
