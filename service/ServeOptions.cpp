#include "ServeOptions.h"

#include <cstdlib>

#include "http/Access.h"

namespace service {
namespace {

ListenAddress ParseListenAddress(const std::string& text) {
  const auto colon = text.rfind(':');
  const auto digits = text.find_first_not_of("0123456789", colon + 1);
  if (colon == std::string::npos || colon == 0 || colon + 1 == text.size() || digits != std::string::npos ||
      text.size() - colon > 6) {
    throw UsageError("--listen takes ADDR:PORT, not " + text);
  }
  ListenAddress address{text.substr(0, colon), std::atoi(text.c_str() + colon + 1)};
  if (address.host.front() == '[' && address.host.back() == ']') {
    address.host = address.host.substr(1, address.host.size() - 2);
  }
  if (address.port > 65535) throw UsageError(std::to_string(address.port) + " is not a valid port: use 0 to 65535");
  return address;
}

}  // namespace

ListenAddress CheckServeOptions(const Options& options) {
  const ListenAddress address = ParseListenAddress(options.listen);
  if (!options.key.empty()) {
    if (options.noKey) throw UsageError("--no-key and a key cannot be combined");
    CheckSendable(options.key);
  }
  if (options.noKey && !IsLoopback(address.host)) {
    throw UsageError("to be reached from other machines, the service needs a key");
  }
  return address;
}

void CheckSendable(const std::string& key) {
  if (IsSendableKey(key)) return;
  throw UsageError("a key consists of letters, digits and - . _ ~, because it is sent in addresses unescaped");
}

}  // namespace service
