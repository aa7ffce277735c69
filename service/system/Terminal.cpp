#include "system/Terminal.h"

#include <unistd.h>

#include <algorithm>
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

void AppendVisibly(std::string& text, unsigned char byte) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  text += {'\\', 'x', kDigits[byte >> 4], kDigits[byte & 15]};
}

bool IsLayout(char letter) { return letter == '\n' || letter == '\r' || letter == '\t'; }

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

std::function<void(std::size_t done, std::size_t total)> ShowProgress(std::string task) {
  if (isatty(STDERR_FILENO) != 1) return nullptr;
  const auto start = std::chrono::steady_clock::now();
  return [task = std::move(task), start](std::size_t done, std::size_t total) {
    if (std::chrono::steady_clock::now() - start < kMoment) return;
    std::cerr << "\r\x1B[K";
    if (done < total) std::cerr << task << ' ' << 100 * done / total << " %";
    std::cerr << std::flush;
  };
}

std::string TextForTerminal(std::string_view text) {
  std::string printable;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    const unsigned char next = i + 1 < text.size() ? static_cast<unsigned char>(text[i + 1]) : 0;
    if (byte == 0xC2 && next >= 0x80 && next < 0xA0) {  // U+0080 to U+009F, controls too
      AppendVisibly(printable, next);
      ++i;
    } else if ((byte < 0x20 && !IsLayout(text[i])) || byte == 0x7F) {
      AppendVisibly(printable, byte);
    } else {
      printable += text[i];
    }
  }
  return printable;
}

std::string LineForTerminal(std::string_view text) {
  std::string line = TextForTerminal(text);
  std::replace_if(line.begin(), line.end(), IsLayout, ' ');
  return line;
}

}  // namespace service
