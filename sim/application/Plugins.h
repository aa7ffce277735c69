// The loaded plug-ins.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "application/Plugin.h"

namespace sim {

class Plugins {
 public:
  /// The host identity reported to plug-ins loaded from now on.
  HostIdentity& identity() { return identity_; }
  const HostIdentity& identity() const { return identity_; }

  /// Loads and initialises a plug-in. On failure `error` says why, see Plugin::Load.
  bool Load(const std::string& path, std::string& error);
  /// In the order of loading.
  const std::vector<std::unique_ptr<Plugin>>& all() const { return plugins_; }

  /// Sends one idle message to every plug-in that asks for them.
  void Idle(int level);
  /// Shuts down and unloads all. Returns one line for each leftover or mistake.
  std::vector<std::string> Quit();

 private:
  HostIdentity identity_;
  std::vector<std::unique_ptr<Plugin>> plugins_;
};

}  // namespace sim
