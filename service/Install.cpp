// varnix-service install and uninstall: whether the system starts the service at login.
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <thread>

#include "ServeOptions.h"
#include "Subcommands.h"
#include "system/PrivateFile.h"
#include "system/Program.h"
#include "system/System.h"

namespace service {
namespace {

constexpr std::chrono::seconds kStopLimit(30);  // launchd kills what has not ended within 20
constexpr std::chrono::milliseconds kStopPause(200);

void Write(const std::string& path, const std::string& text) {
  std::filesystem::create_directories(std::filesystem::path(path).parent_path());
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file << text << std::flush;
  if (!file) throw std::runtime_error(path + " cannot be written");
}

// The system would restart a service that cannot start forever, so this comes before anything is changed.
void Check(const Options& options) {
  CheckServeOptions(options);
  const auto kept = ReadKey(options.Folder());
  if (!options.key.empty() && options.key != kept) {
    throw UsageError("the installed service does not see $VARNIX_KEY: write the key to " + options.Folder() +
                     "/key, or unset the variable");
  }
  if (kept && !options.noKey) CheckSendable(*kept);
}

Words ServeCommand(const Options& options) {
  Words command{ProgramPath(), "serve",       "--listen", options.listen, "--max-body", std::to_string(options.maxBody),
                "--agents",    options.agents};
  if (!options.data.empty())
    command.insert(command.end(), {"--data", std::filesystem::absolute(options.data).string()});
  if (options.noKey) command.emplace_back("--no-key");
  return command;
}

bool IsLoaded(const Autostart& autostart) {
  return !autostart.isLoaded.empty() && RunProgram(autostart.isLoaded, Output::kDiscard).empty();
}

// launchd keeps a loaded service whose file is gone.
bool IsInstalled(const Autostart& autostart) { return std::filesystem::exists(autostart.path) || IsLoaded(autostart); }

// Returns why the service may still run; "" when it has ended. launchd ends it in the background, and refuses to load
// it again before that.
std::string Stop(const Autostart& autostart) {
  if (autostart.isLoaded.empty()) return RunProgram(autostart.stop);
  const auto limit = std::chrono::steady_clock::now() + kStopLimit;
  while (IsLoaded(autostart)) {
    if (std::chrono::steady_clock::now() > limit) return "the system did not stop the service within 30 seconds";
    RunProgram(autostart.stop, Output::kDiscard);
    std::this_thread::sleep_for(kStopPause);
  }
  return "";
}

}  // namespace

ExitStatus RunInstall(const Options& options) {
  Check(options);
  const Autostart autostart = DescribeAutostart(ServeCommand(options));
  if (IsInstalled(autostart)) Stop(autostart);
  Write(autostart.path, autostart.text);
  for (const Words& command : autostart.load) {
    if (const std::string failure = RunProgram(command); !failure.empty()) {
      throw std::runtime_error(failure + "; " + autostart.path + " stays for the next login");
    }
  }
  std::cout
      << "The service was started, and starts at each login (" << autostart.path
      << ").\n\"varnix-service status\" shows whether it answers, \"varnix-service sign-in\" prints the line that "
         "signs FileMaker in, \"varnix-service console\" the address of its console.\n";
  return kDone;
}

ExitStatus RunUninstall(const Options& options) {
  const Autostart autostart = DescribeAutostart({});
  if (!IsInstalled(autostart)) throw std::runtime_error("the service is not installed");
  if (const std::string failure = Stop(autostart); !failure.empty()) {
    throw std::runtime_error(failure + "; nothing was removed, so try again");
  }
  std::filesystem::remove(autostart.path);
  std::cout << "The service no longer starts at login. Its data is kept in " << options.Folder() << ".\n";
  return kDone;
}

}  // namespace service
