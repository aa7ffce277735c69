#include "application/Plugins.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "wrapper/Host.h"

namespace sim {

bool Plugins::Load(const std::string& path, std::string& error) {
  // Reports of what a plug-in leaves behind name its file, so no other may have that name.
  std::error_code unknown;  // a path that does not exist is reported by the loader
  const auto name = std::filesystem::weakly_canonical(path, unknown).filename();
  const auto sameFile = [&name](const auto& plugin) { return plugin->fileName() == name; };
  if (std::any_of(plugins_.begin(), plugins_.end(), sameFile)) {
    error = "cannot load plug-in " + path + ": a plug-in with that file name is already loaded";
    return false;
  }
  auto plugin = Plugin::Load(path, identity_, error);
  if (plugin == nullptr) return false;
  plugins_.push_back(std::move(plugin));
  return true;
}

void Plugins::Idle(int level) {
  for (const auto& plugin : plugins_) plugin->Idle(level);
}

std::vector<std::string> Plugins::Quit() {
  std::vector<std::string> faults;
  for (const auto& plugin : plugins_) {
    for (auto& line : plugin->Shutdown()) faults.push_back(std::move(line));
  }
  for (auto& line : wrapper::Violations()) faults.push_back(std::move(line));
  plugins_.clear();
  return faults;
}

}  // namespace sim
