// The command line of varnix-service.
#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace service {

enum ExitStatus { kDone = 0, kFailed = 1, kWrongUsage = 2, kNotInTime = 3, kNoService = 4 };

class UsageError : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// The options of all subcommands. Each uses its own; the others keep their defaults.
struct Options {
  std::string url = "http://127.0.0.1:8765";
  std::string key;   ///< empty: the one in the data folder
  std::string data;  ///< empty: DefaultFolder()
  bool json = false;
  bool open = false;  ///< in the browser

  std::string listen = "127.0.0.1:8765";
  bool noKey = false;
  long maxBody = 256;  ///< megabytes
  std::string latestVersion;
  std::string agents = "full";  ///< AgentMode

  std::string type;
  std::optional<std::string> file;
  std::optional<std::string> xmlType;
  std::optional<std::string> content;  ///< a file's name, or "-"
  bool force = false;
  std::optional<long> expires;  ///< seconds
  long wait = 60;               ///< seconds

  std::string agent;  ///< AI assistant that requests are made for; empty: none

  std::string id;          ///< of a command
  bool delivered = false;  ///< also cancel a command that a plug-in has fetched
  std::string kind;        ///< of records
  std::optional<long> record;

  std::optional<long> olderThan;  ///< seconds
  std::optional<long> keep;

  std::string design;               ///< path of an export, or id or file name of a stored design; the older of two
  std::string newer;                ///< the newer of two
  std::string of;                   ///< name or UUID of an element
  std::vector<std::string> others;  ///< exports of other files of the solution
  bool unused = false;
  bool broken = false;
  std::optional<std::string> label;
  std::optional<std::string> note;
  std::string text;    ///< to search
  std::string folder;  ///< to write to

  std::string Folder() const;
};

/// Parses the command line and runs its subcommand. Returns the exit status; throws UsageError, or any std::exception
/// of the subcommand.
int RunCommandLine(int argc, char** argv);

}  // namespace service
