// Which FileMaker files are visible from a calculation context. FileMaker's main thread only.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/CalcEngine.h"

/// The names of the open files, separated by line feeds, the current one first; "" when none is known. `env` may be
/// null.
std::string BuildActiveFileList(fmx::ExprEnv* env);

/// The file name a window title stands for: 'Sales - Copy (2)' is 'Sales'; a trailing ".fmp12" of any case is dropped.
std::string WindowNameToFileName(std::string_view title);

/// Appends `candidate` without surrounding blanks unless it is empty or already there, ASCII case ignored.
void AddUniqueName(std::vector<std::string>& names, std::string_view candidate);

fmx::errcode Do_ListFiles(short funcId, const fmx::ExprEnv& env, const fmx::DataVect& args, fmx::Data& result);
