// Other programs, run by this one.
#pragma once

#include <string>
#include <vector>

namespace service {

/// A program, found along $PATH, and its arguments.
using Words = std::vector<std::string>;

enum class Output { kShow, kDiscard };

/// Runs the program and waits for its end. `output` applies to both of its streams. Returns why it failed; "" if it
/// succeeded.
std::string RunProgram(const Words& words, Output output = Output::kShow);

}  // namespace service
