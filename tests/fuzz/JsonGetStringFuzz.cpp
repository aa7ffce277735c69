// The first line is the key, the rest the text to look in: the reader finds what the reference finds.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "net/Json.h"
#include "tests/net/JsonReference.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string input(reinterpret_cast<const char*>(data), size);
  const std::size_t line_end = input.find('\n');
  if (line_end == std::string::npos) return 0;
  const std::string key = input.substr(0, line_end), json = input.substr(line_end + 1);
  // Also with the key surely there, behind and before the text: few inputs hold it by themselves.
  for (const std::string& text : {json, json + "\"" + key + "\":\"" + json}) {
    if (JsonGetString(text, key) != reference::JsonGetString(text, key)) std::abort();
  }
  return 0;
}
