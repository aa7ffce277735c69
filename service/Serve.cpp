// varnix-service serve.
#include <sys/stat.h>

#include <csignal>
#include <cstdlib>
#include <iostream>

#include "Server.h"
#include "Subcommands.h"

namespace service {
namespace {

constexpr char kDefaultListen[] = "127.0.0.1:8765";
constexpr long kDefaultBodyMegabytes = 256;
constexpr long kMostBodyMegabytes = 900;  // SQLite keeps values below 1000 MB

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
  if (address.port > 65535) throw UsageError("there is no port " + std::to_string(address.port));
  return address;
}

std::string DefaultFolder() {
  const char* data = std::getenv("XDG_DATA_HOME");
  if (data != nullptr && *data == '/') return std::string(data) + "/varnix-service";
  const char* home = std::getenv("HOME");
  if (home == nullptr || *home == 0) throw UsageError("HOME is not set: say --data DIR");
  return std::string(home) + "/.local/share/varnix-service";
}

// Blocked before any thread starts, so that all inherit it and the signals wait for sigwait.
sigset_t BlockEndSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGINT);
  sigaddset(&signals, SIGTERM);
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  return signals;
}

}  // namespace

ExitStatus RunServe(const CommandLine& line) {
  const auto address = ParseListenAddress(line.Option("--listen").value_or(kDefaultListen));
  const std::string key = line.Option("--key", "VARNIX_KEY").value_or("");
  if (!key.empty() && !IsSendableKey(key)) {
    throw UsageError("a key is made of letters, digits and - . _ ~, because it is sent in addresses as it stands");
  }
  if (key.empty() && !IsLoopback(address.host)) {
    throw UsageError("to be reached from other machines, the service needs a key");
  }
  const long megabytes = line.Number("--max-body", 1, kMostBodyMegabytes, kDefaultBodyMegabytes);
  const std::string folder = line.Option("--data") ? *line.Option("--data") : DefaultFolder();

  umask(077);  // what FileMaker sends is nobody else's business
  const sigset_t signals = BlockEndSignals();
  Store store(folder);
  Context context{store,
                  Access(key),
                  BodyLimit(static_cast<std::size_t>(megabytes) << 20),
                  line.Option("--latest-version").value_or(VARNIX_VERSION),
                  {}};
  const Server server(address, context);
  std::cout << server.url() << std::endl;
  int signal = 0;
  sigwait(&signals, &signal);
  pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);  // a second one does not wait for running requests
  return kDone;
}

}  // namespace service
