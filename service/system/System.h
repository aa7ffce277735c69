// What differs between the operating systems.
#pragma once

#include <string>
#include <vector>

namespace service {

/// The folder for the service's data: $XDG_DATA_HOME/varnix-service or ~/.local/share/varnix-service on Linux,
/// ~/Library/Application Support/Varnix on macOS. Throws UsageError when the home folder is not known.
std::string DefaultFolder();

/// The path of the running program. Throws std::runtime_error.
std::string ProgramPath();

/// The program that opens an address in the user's browser.
extern const char* const kOpenProgram;

/// How the system starts a program at each login of this user.
struct Autostart {
  std::string path;                            ///< of the file that describes it to the system
  std::string text;                            ///< its content
  std::vector<std::vector<std::string>> load;  ///< the commands that make the system use it
  std::vector<std::string> stop;               ///< the command that undoes `load`
  std::vector<std::string> isLoaded;           ///< succeeds until `stop` has worked; empty when `stop` waits for that
};

/// `command` is the program and its arguments. The system discards its standard output, on which the service prints its
/// key. Throws UsageError when the home folder is not known.
Autostart DescribeAutostart(const std::vector<std::string>& command);

}  // namespace service
