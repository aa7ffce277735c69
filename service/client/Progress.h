// How the state of a command is described to people.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace service {

/// "95 s", "3 min", "2 h".
std::string DescribeDuration(long seconds);

/// The state of a command from the operator interface, and since when: "delivered 8 s ago, no completion".
std::string DescribeState(const nlohmann::json& command);

/// Keeps a line on the terminal (standard error) up to date, and shows each diagnostic above it once.
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
