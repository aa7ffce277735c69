#include <mach-o/dyld.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <system_error>

#include "Options.h"
#include "system/System.h"

namespace service {
namespace {

constexpr char kLabel[] = "com.varnix.service";

std::string Library() {
  const char* home = std::getenv("HOME");
  if (home == nullptr || *home == 0) throw UsageError("HOME is not set");
  return std::string(home) + "/Library/";
}

std::string Element(const std::string& text) {
  std::string element = "<string>";
  for (const char c : text) {
    if (c == '<') {
      element += "&lt;";
    } else if (c == '&') {
      element += "&amp;";
    } else {
      element += c;
    }
  }
  return element + "</string>\n";
}

}  // namespace

const char* const kOpenProgram = "open";

std::string DefaultFolder() { return Library() + "Application Support/Varnix"; }

std::string ProgramPath() {
  std::uint32_t size = 0;
  _NSGetExecutablePath(nullptr, &size);
  std::string path(size, '\0');
  _NSGetExecutablePath(path.data(), &size);
  char resolved[PATH_MAX];
  if (realpath(path.c_str(), resolved) == nullptr)
    throw std::system_error(errno, std::generic_category(), path.c_str());
  return resolved;
}

Autostart DescribeAutostart(const std::vector<std::string>& command) {
  std::string words;
  for (const std::string& word : command) words += "    " + Element(word);
  const std::string path = Library() + "LaunchAgents/" + kLabel + ".plist";
  const std::string domain = "gui/" + std::to_string(getuid());
  const std::string target = domain + '/' + kLabel;
  return {path,
          "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
          "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
          "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
          "<plist version=\"1.0\">\n<dict>\n  <key>Label</key>\n  " +
              Element(kLabel) + "  <key>ProgramArguments</key>\n  <array>\n" + words +
              "  </array>\n  <key>RunAtLoad</key>\n  <true/>\n  <key>KeepAlive</key>\n  <dict>\n"
              "    <key>SuccessfulExit</key>\n    <false/>\n  </dict>\n  <key>ThrottleInterval</key>\n"
              "  <integer>60</integer>\n  <key>StandardOutPath</key>\n  " +
              Element("/dev/null") + "  <key>StandardErrorPath</key>\n  " + Element(Library() + "Logs/Varnix.log") +
              "</dict>\n</plist>\n",
          {{"launchctl", "bootstrap", domain, path}},
          {"launchctl", "bootout", target},
          {"launchctl", "print", target}};
}

}  // namespace service
