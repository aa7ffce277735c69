#include "client/Progress.h"

#include <iostream>

#include "protocol/CommandTypes.h"
#include "system/Terminal.h"

namespace service {
namespace {

constexpr char kClearLine[] = "\r\033[K";

struct Unit {
  const char* name;
  long seconds;
};

constexpr Unit kUnits[] = {{"d", 86400}, {"h", 3600}, {"min", 60}};

}  // namespace

std::string DescribeDuration(long seconds) {
  for (const auto& unit : kUnits) {
    if (seconds >= 2 * unit.seconds) return std::to_string(seconds / unit.seconds) + ' ' + unit.name;
  }
  return std::to_string(seconds) + " s";
}

std::string DescribeState(const nlohmann::json& command) {
  const std::string state = command.at("state");
  const std::string text = state + ' ' + DescribeDuration(command.at("secondsInState")) + " ago";
  return state == "delivered" ? text + ", no completion" : text;
}

Progress::~Progress() {
  if (onTerminal_) std::cerr << kClearLine << std::flush;
}

void Progress::Show(const nlohmann::json& command) {
  if (!onTerminal_) return;
  std::cerr << kClearLine;
  const auto& diagnostics = command.at("diagnostics");
  for (; diagnosticsShown_ < diagnostics.size(); ++diagnosticsShown_) {
    std::cerr << TextForTerminal(diagnostics[diagnosticsShown_].at("message").get<std::string>()) << '\n';
  }
  std::cerr << PublicName(command.at("type").get<std::string>()) << ": " << DescribeState(command) << std::flush;
}

void Progress::ShowTrouble(const std::string& text) {
  if (onTerminal_) std::cerr << kClearLine << text << std::flush;
}

}  // namespace service
