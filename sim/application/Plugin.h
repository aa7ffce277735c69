// A plug-in in the process: loading, its messages, and what it leaves behind.
#pragma once

#include <FMWrapper/FMXExtern.h>

#include <memory>
#include <string>
#include <vector>

namespace sim {

/// How the host identifies itself to a plug-in.
struct HostIdentity {
  short extensionVersion = 71;             ///< 71 is FileMaker 2023
  FMX_Application application = 1;         ///< 1 Pro, 7 server scripts
  std::u16string version = u"Pro 22.0.1";  ///< also what Get ( ApplicationVersion ) gives
  FMX_StartScriptCall startScript = nullptr;
  FMX_CurrentEnvCall currentEnvironment = nullptr;
};

class Plugin {
 public:
  /// Loads the plug-in at `path`, a library or a macOS bundle, asks for its strings and initialises it. On failure
  /// returns null and sets `error` to the reason: the file is missing or not a plug-in, or the plug-in refuses to be
  /// enabled or throws. A line for each thing that it left behind follows.
  static std::unique_ptr<Plugin> Load(const std::string& path, const HostIdentity& host, std::string& error);

  /// Unloads the plug-in; call Shutdown first.
  ~Plugin();
  Plugin(const Plugin&) = delete;
  Plugin& operator=(const Plugin&) = delete;

  const std::string& fileName() const { return fileName_; }
  const std::u16string& name() const { return name_; }
  const std::u16string& description() const { return description_; }
  const std::u16string& options() const { return options_; }
  const std::u16string& helpUrl() const { return helpUrl_; }

  /// Sends an idle message, if the plug-in's options ask for them.
  void Idle(int level);

  /// Sends the shutdown message. Returns a line for each function left registered and each host object left alive.
  std::vector<std::string> Shutdown();

 private:
  Plugin(std::string fileName, void* library, FMX_ExternCallProc entryPoint, const HostIdentity& host);

  /// False when the plug-in threw.
  bool Send(FMX_ExternCallSwitch message, FMX_UChar parm1 = 0, FMX_PtrType parm2 = 0, FMX_PtrType parm3 = 0);
  std::u16string AskString(int id);
  /// On failure `error` holds the reason.
  bool Initialise(const HostIdentity& host, std::string& error);
  /// See Shutdown. Also unregisters the functions.
  std::vector<std::string> TakeLeftovers();

  std::string fileName_;
  void* library_;
  std::u16string name_, description_, options_, helpUrl_;
  // Plug-ins reach the host through the record of the last message even between messages.
  FMX_ExternCallStruct call_{};
};

}  // namespace sim
