// The command line of varnix-service.
#pragma once

#include <map>
#include <optional>
#include <stdexcept>
#include <string>

namespace service {

enum ExitStatus { kDone = 0, kFailed = 1, kWrongUsage = 2, kNotInTime = 3, kNoService = 4 };

class UsageError : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

class CommandLine {
 public:
  /// Throws UsageError. The subcommand's own checks of values come later.
  CommandLine(int argc, char** argv);

  bool wantsHelp() const { return run_ == nullptr; }

  /// Carries out the subcommand. May throw any std::exception.
  ExitStatus Run() const { return run_(*this); }

  /// The TYPE or ID after the subcommand.
  const std::string& operand() const { return operand_; }

  /// The value of option `name` ("--key"); failing that, of environment variable `variable`, if one is named and set.
  std::optional<std::string> Option(const char* name, const char* variable = nullptr) const;

  /// The value of an option that takes a whole number from `lowest` to `highest`, or `otherwise`. Throws UsageError.
  long Number(const char* name, long lowest, long highest, long otherwise) const;

 private:
  ExitStatus (*run_)(const CommandLine&) = nullptr;
  std::string operand_;
  std::map<std::string, std::string> options_;
};

/// The usage text, ending with a line end.
std::string Usage();

}  // namespace service
