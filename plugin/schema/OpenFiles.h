// Which FileMaker files are visible from a calculation context. FileMaker's main thread only.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/CalcEngine.h"

/// The names of the open files, separated by line feeds: the current one first, then `registeredFile` (may be empty);
/// "" when none is known. `env` may be null.
std::string BuildActiveFileList(const fmx::ExprEnv* env, const std::string& registeredFile);

/// The file name in a window title: 'Sales - Copy (2)' gives 'Sales'. A trailing ".fmp12" in any case is dropped.
std::string WindowNameToFileName(std::string_view title);

/// Appends `candidate` without surrounding white space, unless it is empty or already listed, ignoring ASCII case.
void AddUniqueName(std::vector<std::string>& names, std::string_view candidate);
