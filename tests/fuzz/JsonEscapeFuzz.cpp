// Any text comes out of the two writers as the reference writes it, alone and repeated over many blocks.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "net/Json.h"
#include "tests/net/JsonReference.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string text(reinterpret_cast<const char*>(data), size);
  for (int i = 0; i < 3; ++i) {
    if (JsonEscape(text) != reference::JsonEscape(text)) std::abort();
    if (NlToJsonArray(text) != reference::NlToJsonArray(text)) std::abort();
    text += text + "x";
  }
  return 0;
}
