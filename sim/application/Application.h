// The simulated FileMaker Pro: its files, plug-ins and scripts, and its answers to plug-ins. Everything in sim/ belongs
// to one thread, except where a header says otherwise. Texts are UTF-16; a std::string is UTF-8.
#pragma once

#include <atomic>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "application/Files.h"
#include "application/Plugins.h"
#include "application/Scripts.h"
#include "calc/Environment.h"
#include "solution/HostBehaviour.h"
#include "wrapper/Host.h"

namespace sim {

/// What a session works with, and what answers the plug-ins. Only one may exist at a time.
class Application : public wrapper::Host {
 public:
  Application();
  ~Application() override;
  Application(const Application&) = delete;
  Application& operator=(const Application&) = delete;

  void SetBehaviour(const HostBehaviour& behaviour);
  const HostBehaviour& behaviour() const { return behaviour_; }
  Files& files() { return files_; }
  const Files& files() const { return files_; }
  Plugins& plugins() { return plugins_; }
  const Plugins& plugins() const { return plugins_; }

  /// The names of the design functions, for listings.
  std::vector<std::u16string> DesignFunctionNames() const;
  /// The design function or plug-in function of that name; nullptr when not found.
  const calc::HostFunction* FindHostFunction(std::u16string_view name);

  /// Evaluates in the context of the active file and the running script. 0, or FileMaker's error.
  int Evaluate(std::u16string_view formula, calc::Value& result);
  /// Evaluates in the context of `file` (nullptr: none).
  int EvaluateIn(OpenFile* file, std::u16string_view formula, calc::Value& result);

  /// Queues a script as the start-script callback does: 0, 100 (file not open), 825 (the account's privilege set lacks
  /// the extended privilege fmplugin) or 1825 (no such script).
  short StartScript(std::u16string_view fileName, std::u16string_view scriptName, const calc::Value& parameter);
  /// Removes and returns the script that has waited longest to run; nullopt when none waits.
  std::optional<QueuedScript> TakeQueuedScript();

  /// The running script, nullptr when none is running; set by the script runner.
  ScriptFrame* runningScript = nullptr;

  /// The unknown name that made the last failed calculation fail.
  std::u16string unknownName;

  /// Variables of calculations while no file is open.
  calc::Variables globals;
  calc::Variables locals;

  /// A nonzero flag ends the current calculation and the running script. nullptr: they cannot be cancelled.
  const std::atomic<int>* cancelFlag = nullptr;
  bool IsCancelled() const { return cancelFlag != nullptr && *cancelFlag != 0; }

  /// Called immediately, with a line, for every exception that a plug-in throws.
  std::function<void(const std::string& line)> onPluginThrew;

  // Requests from plug-ins.
  short Evaluate(std::uint64_t file, std::u16string_view expression, calc::Value& result) override;
  short ExecuteSql(std::uint64_t file, std::u16string_view fileName, std::u16string_view sql,
                   std::span<const calc::Value> arguments, wrapper::Rows& rows) override;
  short ConvertFromFileMakerPath(std::uint64_t file, std::u16string_view path, int format,
                                 std::u16string& result) override;
  short ConvertToFileMakerPath(std::uint64_t file, std::u16string_view path, int format,
                               std::u16string& result) override;
  void PluginThrew(const std::string& line) override;

 private:
  calc::Value CallPlugin(const std::u16string& name, std::span<const calc::Value> arguments);

  HostBehaviour behaviour_;
  Files files_;
  const Solution* current_ = nullptr;  // of the calculation being evaluated
  // By folded name. Those of plug-ins are added when first used.
  std::map<std::u16string, calc::HostFunction> hostFunctions_;
  std::map<std::u16string, calc::HostFunction> pluginFunctions_;
  Plugins plugins_;
  std::deque<QueuedScript> queuedScripts_;
};

}  // namespace sim
