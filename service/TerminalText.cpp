#include "TerminalText.h"

#include <algorithm>

namespace service {
namespace {

void AppendVisibly(std::string& text, unsigned char byte) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  text += {'\\', 'x', kDigits[byte >> 4], kDigits[byte & 15]};
}

bool IsLayout(char letter) { return letter == '\n' || letter == '\r' || letter == '\t'; }

}  // namespace

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
