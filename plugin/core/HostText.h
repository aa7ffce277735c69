// All conversions between FileMaker's UTF-16 values and the plug-in's UTF-8 strings. FileMaker's main thread only. A
// text ends at its first zero byte. An exception that the host reports is thrown as std::bad_alloc or std::exception.
#pragma once

#include <FMWrapper/FMXData.h>
#include <FMWrapper/FMXText.h>

#include <initializer_list>
#include <string>

#include "core/CalcEngine.h"
#include "core/NamedText.h"

/// Argument `index` (from 0); "" when there is no such argument or it is empty.
std::string GetTextArg(const fmx::DataVect& args, unsigned int index);

/// "ERROR: <name> is empty." for the first of the named arguments that is empty, or "" when every one has text.
std::string EmptyArgumentError(std::initializer_list<NamedText> arguments);

/// Makes `result` a text value, and keeps its locale.
void SetTextResult(const std::string& utf8, fmx::Data& result);

/// The result of the FileMaker calculation `expression` (UTF-8), evaluated in `env`, as text; "" on any failure.
/// Without an `env`, and when `expression` is not UTF-8, nothing is evaluated. During the evaluation FileMaker may call
/// the plug-in again.
std::string EvalCalc(const fmx::ExprEnv* env, const char* expression);

/// Copies `utf8` into `out`, a buffer of `capacity` UTF-16 units (at least 1); cut to fit, always zero-terminated.
void CopyUTF8ToUnichar16(const char* utf8, unsigned int capacity, unsigned short* out);
