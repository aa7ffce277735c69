// Other programs, run by this one.
#pragma once

#include <string>
#include <vector>

namespace service {

/// A program, found along $PATH, and its arguments.
using Words = std::vector<std::string>;

/// Runs the program and waits for its end. Returns why it failed; "" when it did not.
std::string RunProgram(const Words& words);

}  // namespace service
