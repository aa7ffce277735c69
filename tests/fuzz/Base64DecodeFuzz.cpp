// What is taken for base64 is exactly what the encoder writes, and gives back what it was written from.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "net/Base64.h"
#include "service/Base64Decode.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  if (service::DecodeBase64(Base64Encode(bytes)) != bytes) std::abort();
  const auto decoded = service::DecodeBase64(bytes);
  if (decoded && Base64Encode(*decoded) != bytes) std::abort();
  return 0;
}
