// What people are told about a command that is not finished.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace service {

/// The state of a command of the operator interface and for how long: "delivered 8 s ago, no completion".
std::string DescribeState(const nlohmann::json& command);

/// Keeps a line on the terminal (standard error) up to date, and above it tells each diagnostic once.
class Progress {
 public:
  explicit Progress(bool onTerminal) : onTerminal_(onTerminal) {}
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  void Show(const nlohmann::json& command);
  void ShowTrouble(const std::string& text);

 private:
  bool onTerminal_;
  std::size_t diagnosticsShown_ = 0;
};

}  // namespace service
