// Whole-file reading and FileMaker paths.
#pragma once

#include <string>

#include "core/CalcEngine.h"

namespace FileIO {

/// Reads all bytes of the regular file at `path` (UTF-8, used as given). On failure returns false and `error` holds the
/// message; `content` is untouched. Anything but a regular file counts as one that cannot be opened, so that a FIFO or
/// a device never holds up the caller.
bool Read(const std::string& path, std::string& content, std::string& error);

/// The same, but adds the bytes to the end of `content`, with room for a little more. On failure `content` is as it
/// was.
bool Append(const std::string& path, std::string& content, std::string& error);

}  // namespace FileIO

fmx::errcode Do_ReadFile(short funcId, const fmx::ExprEnv& env, const fmx::DataVect& args, fmx::Data& result);
fmx::errcode Do_POSIXPath(short funcId, const fmx::ExprEnv& env, const fmx::DataVect& args, fmx::Data& result);
