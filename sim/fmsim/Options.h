// The command line of fmsim.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "fmsim/Session.h"

struct CommandLine {
  std::vector<std::function<bool(Session&)>> actions;  ///< in the order given; each shows its own failure
  bool evaluates = false;                              ///< there are calculations, scripts or idle calls: no prompt
  bool help = false;
};

/// Reads the whole command line before anything is carried out. On wrong usage returns false and `error` says why.
bool ParseCommandLine(int argc, char** argv, CommandLine& line, std::string& error);

/// The usage text, with a final newline.
std::string Usage();
