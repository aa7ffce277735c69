// Runs a program to its end.
#pragma once

#include <string>
#include <vector>

struct ProcessResult {
  int status = -1;  ///< exit status, or 128 and the signal that ended it
  std::string output;
  std::string errors;
};

/// Runs `arguments` (the program first) with `input` as its standard input and collects what it prints.
ProcessResult RunProcess(const std::vector<std::string>& arguments, const std::string& input = "");
