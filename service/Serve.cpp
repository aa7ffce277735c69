// varnix-service serve.
#include <sys/stat.h>

#include <chrono>
#include <csignal>
#include <ctime>
#include <iostream>
#include <mutex>

#include "ServeOptions.h"
#include "Subcommands.h"
#include "client/Client.h"
#include "console/Backup.h"
#include "console/Console.h"
#include "console/Watch.h"
#include "designs/DesignIndexer.h"
#include "http/Server.h"
#include "system/PrivateFile.h"

namespace service {
namespace {

// Empty when the service needs none.
std::string AccountKey(const Options& options) {
  if (options.noKey) return {};
  std::string key = options.key.empty() ? ReadOrMakeKey(options.Folder()) : options.key;
  CheckSendable(key);
  return key;
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

void LogLine(const std::string& line) {
  static std::mutex mutex;
  const std::lock_guard lock(mutex);
  const std::time_t now = std::time(nullptr);
  char time[32] = "";
  std::tm fields{};
  std::strftime(time, sizeof time, "%Y-%m-%d %H:%M:%S ", localtime_r(&now, &fields));
  std::cerr << time + line + '\n';
}

}  // namespace

ExitStatus RunServe(const Options& options) {
  const auto address = CheckServeOptions(options);
  umask(077);  // what FileMaker sends is for its user only
  const sigset_t signals = BlockEndSignals();
  Store store(options.Folder());
  RemoveBackups(options.Folder());
  const std::string key = AccountKey(options);
  Context context{store, Access(key, address.host), BodyLimit(static_cast<std::size_t>(options.maxBody) << 20),
                  options.latestVersion.empty() ? VARNIX_VERSION : options.latestVersion, LogLine};
  store.Observe([&context](Topic topic) { context.events.Fire(topic); });
  DesignIndexer indexer(
      options.Folder(), [&context](const std::string& event) { context.Log(event); },
      [&context] { context.events.Fire(Topic::kDesigns); });
  context.agents = AgentModeNamed(options.agents);
  KeepAgentMode(options.Folder(), context.agents);
  context.storeChanged = [&context, &indexer] {
    context.designs.Forget([&context](std::int64_t id) { return !context.store.FindRecord(id); });
    indexer.Wake();
  };
  context.awaitIndex = [&indexer](std::chrono::milliseconds longest) { return indexer.Await(longest); };
  const Watch watch(context);
  const Server server(address, context);
  std::cout << context.url << "\nTo sign in, evaluate in FileMaker:  " << context.access.SignInLine(context.url)
            << "\nConsole:  " << ConsoleAddress(context.url, context.sessions.NewToken()) << std::endl;
  int signal = 0;
  sigwait(&signals, &signal);
  pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);  // a second one does not wait for running requests
  store.EndUpkeep();
  indexer.Stop();
  return kDone;
}

// With the wrong key, or for a service that is not running, the line would be of no use.
ExitStatus RunSignIn(const Options& options) {
  Client client(options);
  client.Get("/operator/status");
  const Access access(options.key.empty() ? ReadKey(options.Folder()).value_or("") : options.key);
  std::cout << access.SignInLine(client.url()) << '\n';
  return kDone;
}

}  // namespace service
