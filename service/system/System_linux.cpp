#include <cstdlib>
#include <filesystem>

#include "Options.h"
#include "system/System.h"

namespace service {
namespace {

// A relative path in the variable is ignored, as the desktop environments do.
std::string UserFolder(const char* variable, const char* inHome) {
  const char* folder = std::getenv(variable);
  if (folder != nullptr && *folder == '/') return folder;
  const char* home = std::getenv("HOME");
  if (home == nullptr || *home == 0) throw UsageError("HOME is not set");
  return std::string(home) + inHome;
}

// A word of a command in a unit file, where % and $ begin names.
std::string Quoted(const std::string& word) {
  std::string quoted = "\"";
  for (const char c : word) {
    if (c == '"' || c == '\\') quoted += '\\';
    if (c == '%' || c == '$') quoted += c;
    quoted += c;
  }
  return quoted + '"';
}

}  // namespace

const char* const kOpenProgram = "xdg-open";

std::string DefaultFolder() { return UserFolder("XDG_DATA_HOME", "/.local/share") + "/varnix-service"; }

std::string ProgramPath() { return std::filesystem::read_symlink("/proc/self/exe").string(); }

Autostart DescribeAutostart(const std::vector<std::string>& command) {
  std::string line;
  for (const std::string& word : command) line += (line.empty() ? "" : " ") + Quoted(word);
  constexpr char kUnit[] = "varnix-service.service";
  return {UserFolder("XDG_CONFIG_HOME", "/.config") + "/systemd/user/" + kUnit,
          "[Unit]\nDescription=Varnix bridge service\n\n[Service]\nExecStart=" + line +
              "\nStandardOutput=null\nRestart=on-failure\n\n[Install]\nWantedBy=default.target\n",
          {{"systemctl", "--user", "daemon-reload"},
           {"systemctl", "--user", "enable", kUnit},
           {"systemctl", "--user", "restart", kUnit}},
          {"systemctl", "--user", "disable", "--now", kUnit},
          {}};
}

}  // namespace service
