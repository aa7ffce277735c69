// The nineteen external functions: the table FileMaker is given, and their registration. FileMaker's main thread only.
#pragma once

#include <FMWrapper/FMXCalcEngine.h>

#include <span>

struct ExternalFunction {
  short id;
  const char* name;
  short minArguments;
  short maxArguments;
  const char* prototype;    ///< as the function list shows it; braces mark optional arguments
  const char* description;  ///< shown in FileMaker's calculation dialogs
  fmx::ExtPluginType handler;
};

/// In order of registration, which is also the order of ids, 100 to 118 without gaps.
std::span<const ExternalFunction> ExternalFunctions();

/// Registers all functions; the result is FileMaker's error for the first of them. Failures of others are passed over.
fmx::errcode RegisterExternalFunctions();

void UnregisterExternalFunctions();
