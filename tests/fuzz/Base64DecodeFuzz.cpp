// What is taken for base64 is exactly what the encoder writes, and gives back what it was written from.
#include "net/Base64.h"
#include "Base64Decode.h"
#include "fuzz/Fuzz.h"

void Try(const std::string& input) {
  Check(service::DecodeBase64(Base64Encode(input)) == input);
  const auto decoded = service::DecodeBase64(input);
  Check(!decoded || Base64Encode(*decoded) == input);
}
