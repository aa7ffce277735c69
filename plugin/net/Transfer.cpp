#include "net/Transfer.h"

#include <new>

namespace Network {

Outcome Failure(const char* reason) noexcept {
  Outcome outcome;
  try {
    outcome.failure = reason;
  } catch (const std::bad_alloc&) {
    outcome.failure = kOutOfMemory;
  }
  return outcome;
}

Outcome Answer(long long status, const char* body, std::size_t size) noexcept {
  Outcome outcome{.hasBody = body != nullptr, .body = {}, .failure = {}, .status = status};
  try {
    if (size != 0) outcome.body.assign(body, size);
  } catch (const std::bad_alloc&) {
    return Failure(kOutOfMemory);
  }
  return outcome;
}

}  // namespace Network
