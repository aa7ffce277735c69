#include "clipboard/x11/Latin1.h"

#include <cstddef>

namespace x11 {

std::string Latin1ToUtf8(std::string_view latin1) {
  std::string utf8;
  utf8.reserve(latin1.size());
  for (const char c : latin1) {
    const auto code = static_cast<unsigned char>(c);
    if (code < 0x80) {
      utf8 += c;
    } else {
      utf8 += static_cast<char>(0xC0 | code >> 6);
      utf8 += static_cast<char>(0x80 | (code & 0x3F));
    }
  }
  return utf8;
}

std::string Utf8ToLatin1(std::string_view utf8) {
  std::string latin1;
  latin1.reserve(utf8.size());
  for (std::size_t i = 0; i < utf8.size(); ++i) {
    const auto lead = static_cast<unsigned char>(utf8[i]);
    if (lead < 0x80) {
      latin1 += utf8[i];
    } else if ((lead == 0xC2 || lead == 0xC3) && i + 1 < utf8.size()) {
      latin1 += static_cast<char>((lead & 0x03) << 6 | (static_cast<unsigned char>(utf8[++i]) & 0x3F));
    } else if (lead >= 0xC0) {  // the bytes that continue it add nothing
      latin1 += '?';
    }
  }
  return latin1;
}

}  // namespace x11
