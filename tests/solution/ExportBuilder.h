// Builds exports of one and the same small file as the versions of FileMaker would save it.
#pragma once

#include <string>
#include <string_view>

/// How a format version differs from the others.
struct FormatVersion {
  const char* number;
  bool bareTableReferences = false;   ///< 2.0.0.0: another root, references not wrapped
  bool insecureAccountNames = false;  ///< account names inside INSECURE_TEXT
  bool chunkLists = false;            ///< a ChunkList beside every formula
  bool separateValueLists = false;    ///< contents in OptionsForValueLists
  bool functionFolders = false;       ///< custom functions have folders
  bool inlineFunctions = false;       ///< formulas inside the CustomFunction
};

inline constexpr FormatVersion kFormatVersions[] = {
    {.number = "2.0.0.0", .bareTableReferences = true},
    {.number = "2.1.0.0", .insecureAccountNames = true},
    {.number = "2.2.0.0", .insecureAccountNames = true, .chunkLists = true},
    {.number = "2.2.1.0", .insecureAccountNames = true, .chunkLists = true},
    {.number = "2.2.2.0", .insecureAccountNames = true, .separateValueLists = true},
    {.number = "2.2.3.0", .separateValueLists = true, .functionFolders = true},
    {.number = "2.2.3.4", .functionFolders = true, .inlineFunctions = true},
    {.number = "2.3.0.0", .functionFolders = true, .inlineFunctions = true},
};

/// UTF-8, without a byte-order mark.
std::string BuildExport(const FormatVersion& version);

/// What BuildExport's file holds, as Describe() of SolutionReaderTest.cpp writes it.
extern const std::string_view kExportedDesign;
