#include "designs/Terminal.h"

#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <iostream>

namespace service {
namespace {

constexpr std::chrono::milliseconds kMoment{300};

bool IsSet(const char* variable) {
  const char* value = std::getenv(variable);
  return value != nullptr && *value != '\0';
}

}  // namespace

Colours Colours::OfOutput() {
  const char* terminal = std::getenv("TERM");
  const bool isDumb = terminal != nullptr && std::string_view(terminal) == "dumb";
  return Colours(isatty(STDOUT_FILENO) == 1 && !isDumb && !IsSet("NO_COLOR"));
}

std::string Colours::Paint(const char* code, std::string_view text) const {
  if (!isOn_) return std::string(text);
  return std::string("\x1B[") + code + 'm' + std::string(text) + "\x1B[0m";
}

solution::Progress ShowProgress(std::string task) {
  if (isatty(STDERR_FILENO) != 1) return nullptr;
  const auto start = std::chrono::steady_clock::now();
  return [task = std::move(task), start](std::size_t done, std::size_t total) {
    if (std::chrono::steady_clock::now() - start < kMoment) return;
    std::cerr << "\r\x1B[K";
    if (done < total) std::cerr << task << ' ' << 100 * done / total << " %";
    std::cerr << std::flush;
  };
}

std::string Printable(std::string_view text) {
  std::string printable(text);
  for (char& c : printable) {
    if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) c = ' ';
  }
  return printable;
}

}  // namespace service
