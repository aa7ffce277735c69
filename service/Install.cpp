// varnix-service install and uninstall: whether the system starts the service at login.
#include <filesystem>
#include <fstream>
#include <iostream>

#include "PrivateFile.h"
#include "Program.h"
#include "Subcommands.h"
#include "System.h"

namespace service {
namespace {

void Write(const std::string& path, const std::string& text) {
  std::filesystem::create_directories(std::filesystem::path(path).parent_path());
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file << text << std::flush;
  if (!file) throw std::runtime_error(path + " cannot be written");
}

Words ServeCommand(const Options& options) {
  Words command{ProgramPath(), "serve",       "--listen", options.listen, "--max-body", std::to_string(options.maxBody),
                "--agents",    options.agents};
  if (!options.data.empty())
    command.insert(command.end(), {"--data", std::filesystem::absolute(options.data).string()});
  if (options.noKey) command.emplace_back("--no-key");
  return command;
}

}  // namespace

ExitStatus RunInstall(const Options& options) {
  const Autostart autostart = DescribeAutostart(ServeCommand(options));
  if (std::filesystem::exists(autostart.path)) {
    for (const Words& command : autostart.stop) RunProgram(command);
  }
  Write(autostart.path, autostart.text);
  for (const Words& command : autostart.load) {
    if (const std::string failure = RunProgram(command); !failure.empty()) {
      throw std::runtime_error(failure + "; " + autostart.path + " stays for the next login");
    }
  }
  std::cout << "The service is running and starts at each login (" << autostart.path
            << ").\n\"varnix-service sign-in\" prints the line that signs FileMaker in, \"varnix-service "
               "console\" the address of its console.\n";
  return kDone;
}

ExitStatus RunUninstall(const Options& options) {
  const Autostart autostart = DescribeAutostart({});
  if (!std::filesystem::exists(autostart.path)) throw std::runtime_error("the service is not installed");
  for (const Words& command : autostart.stop) {
    if (const std::string failure = RunProgram(command); !failure.empty())
      std::cerr << "varnix-service: " << failure << '\n';
  }
  std::filesystem::remove(autostart.path);
  std::cout << "The service no longer starts at login. Its data remain in " << options.Folder() << ".\n";
  return kDone;
}

}  // namespace service
