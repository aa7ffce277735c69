// varnix-service install and uninstall: whether the system starts the service at login.
#include <spawn.h>
#include <sys/wait.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>

#include "PrivateFile.h"
#include "Subcommands.h"
#include "System.h"

extern char** environ;

namespace service {
namespace {

using Command = std::vector<std::string>;

std::string Line(const Command& command) {
  std::string line;
  for (const std::string& word : command) line += (line.empty() ? "" : " ") + word;
  return line;
}

/// Waits for the command; returns why it failed, or nothing.
std::string Run(const Command& command) {
  std::vector<char*> words;
  for (const std::string& word : command) words.push_back(const_cast<char*>(word.c_str()));  // spawn changes none
  words.push_back(nullptr);
  pid_t child = 0;
  if (const int error = posix_spawnp(&child, words[0], nullptr, nullptr, words.data(), environ); error != 0) {
    return Line(command) + ": " + std::strerror(error);
  }
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  return status == 0 ? "" : Line(command) + " failed";
}

void Write(const std::string& path, const std::string& text) {
  std::filesystem::create_directories(std::filesystem::path(path).parent_path());
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file << text << std::flush;
  if (!file) throw std::runtime_error(path + " cannot be written");
}

Command ServeCommand(const Options& options) {
  Command command{ProgramPath(), "serve", "--listen", options.listen, "--max-body", std::to_string(options.maxBody)};
  if (!options.data.empty())
    command.insert(command.end(), {"--data", std::filesystem::absolute(options.data).string()});
  if (options.noKey) command.emplace_back("--no-key");
  return command;
}

}  // namespace

ExitStatus RunInstall(const Options& options) {
  const Autostart autostart = DescribeAutostart(ServeCommand(options));
  if (std::filesystem::exists(autostart.path)) {
    for (const Command& command : autostart.stop) Run(command);
  }
  Write(autostart.path, autostart.text);
  for (const Command& command : autostart.load) {
    if (const std::string failure = Run(command); !failure.empty()) {
      throw std::runtime_error(failure + "; " + autostart.path + " stays for the next login");
    }
  }
  std::cout << "The service is running and starts at each login (" << autostart.path
            << ").\n\"varnix-service sign-in\" prints the line that signs FileMaker in.\n";
  return kDone;
}

ExitStatus RunUninstall(const Options& options) {
  const Autostart autostart = DescribeAutostart({});
  if (!std::filesystem::exists(autostart.path)) throw std::runtime_error("the service is not installed");
  for (const Command& command : autostart.stop) {
    if (const std::string failure = Run(command); !failure.empty()) std::cerr << "varnix-service: " << failure << '\n';
  }
  std::filesystem::remove(autostart.path);
  std::cout << "The service no longer starts at login. Its data remain in " << options.Folder() << ".\n";
  return kDone;
}

}  // namespace service
