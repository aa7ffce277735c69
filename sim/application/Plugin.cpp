#include "application/Plugin.h"

#include <dlfcn.h>

#include <cstdlib>
#include <filesystem>

#include "calc/Unicode.h"
#include "wrapper/Host.h"

namespace sim {

namespace {

constexpr char kEntryPoint[] = "FMExternCallProc";
constexpr std::size_t kStringCapacity = 1024;  // in UTF-16 units
constexpr std::size_t kIdleOption = 8;         // the ninth character of the options string
constexpr std::size_t kOptionsLength = 11;

std::string MessageName(FMX_ExternCallSwitch message) {
  switch (message) {
    case kFMXT_Init:
      return "the initialise message";
    case kFMXT_Idle:
      return "the idle message";
    case kFMXT_Shutdown:
      return "the shutdown message";
    default:
      return "the message that asks for a string";
  }
}

}  // namespace

std::unique_ptr<Plugin> Plugin::Load(const std::string& path, const HostIdentity& host, std::string& error) {
  std::error_code failure;
  const auto file = std::filesystem::canonical(path, failure);
  if (failure) {
    error = "cannot load plug-in " + path + ": " + failure.message();
    return nullptr;
  }
  const std::string name = file.filename().string();
  const auto binary = std::filesystem::is_directory(file) ? file / "Contents/MacOS" / file.stem() : file;
  void* library = nullptr;
  {
    const wrapper::Scope asPlugin(name);
    library = dlopen(binary.c_str(), RTLD_NOW | RTLD_LOCAL);
  }
  if (library == nullptr) {
    error = "cannot load plug-in " + path + ": " + dlerror();
    return nullptr;
  }
  const auto entryPoint = reinterpret_cast<FMX_ExternCallProc>(dlsym(library, kEntryPoint));
  if (entryPoint == nullptr) {
    error = "cannot load plug-in " + path + ": it has no entry point " + kEntryPoint;
    dlclose(library);
    return nullptr;
  }

  std::unique_ptr<Plugin> plugin(new Plugin(name, library, entryPoint, host));
  plugin->options_ = plugin->AskString(kFMXT_OptionsStr);
  if (plugin->options_.size() < kOptionsLength) {
    error =
        "cannot load plug-in " + path + ": its options string \"" + calc::ToUtf8(plugin->options_) + "\" is too short";
    return nullptr;
  }
  plugin->name_ = plugin->AskString(kFMXT_NameStr);
  plugin->description_ = plugin->AskString(kFMXT_AppConfigStr);
  plugin->helpUrl_ = plugin->AskString(kFMXT_HelpURLStr);
  if (!plugin->Initialise(host, error)) {
    for (const auto& line : plugin->TakeLeftovers()) error += '\n' + line;
    return nullptr;
  }
  return plugin;
}

Plugin::Plugin(std::string fileName, void* library, FMX_ExternCallProc entryPoint, const HostIdentity& host)
    : fileName_(std::move(fileName)), library_(library) {
  call_.extnVersion = host.extensionVersion;
  call_.unusedID = -1;
  call_.entryPoint = entryPoint;
  call_.cStartScript = host.startScript;
  call_.cCurrentEnv = host.currentEnvironment;
}

Plugin::~Plugin() { dlclose(library_); }

bool Plugin::Send(FMX_ExternCallSwitch message, FMX_UChar parm1, FMX_PtrType parm2, FMX_PtrType parm3) {
  call_.whichCall = message;
  call_.parm1 = parm1;
  call_.parm2 = parm2;
  call_.parm3 = parm3;
  return wrapper::Guard(fileName_, MessageName(message), [this] { call_.entryPoint(&call_); });
}

std::u16string Plugin::AskString(int id) {
  std::vector<char16_t> buffer(kStringCapacity + 1);
  call_.result = reinterpret_cast<FMX_PtrType>(buffer.data());
  Send(kFMXT_GetString, static_cast<FMX_UChar>(id), 0, kStringCapacity);
  buffer.back() = 0;
  return buffer.data();
}

bool Plugin::Initialise(const HostIdentity& host, std::string& error) {
  call_.result = 0;
  if (!Send(kFMXT_Init, host.application, reinterpret_cast<FMX_PtrType>(host.version.c_str()))) {
    error = "plug-in " + fileName_ + " cannot be enabled";
    return false;
  }
  if (static_cast<short>(call_.result) != kDoNotEnable) return true;
  error = "plug-in " + fileName_ + " refuses to be enabled by a host with extension version " +
          std::to_string(host.extensionVersion);
  return false;
}

void Plugin::Idle(int level) {
  if (options_[kIdleOption] == u'Y') Send(kFMXT_Idle, static_cast<FMX_UChar>(level), 1);
}

std::vector<std::string> Plugin::Shutdown() {
  Send(kFMXT_Shutdown);
  return TakeLeftovers();
}

std::vector<std::string> Plugin::TakeLeftovers() {
  std::vector<std::string> leftovers;
  for (const auto& name : wrapper::DropRegistrations(fileName_)) {
    leftovers.push_back(fileName_ + ": left \"" + calc::ToUtf8(name) + "\" registered");
  }
  for (const auto& line : wrapper::LiveObjects()) {
    if (line.starts_with(fileName_ + ": ")) leftovers.push_back(line);
  }
  return leftovers;
}

}  // namespace sim
