// The simulated FileMaker Pro: open files, windows, running scripts, and the answers to plug-ins. One thread.
#pragma once

#include <atomic>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "application/Plugin.h"
#include "calc/Environment.h"
#include "solution/DesignFunctions.h"
#include "solution/Solution.h"
#include "wrapper/Host.h"

namespace sim {

struct OpenFile {
  std::uint64_t id = 0;
  Solution solution;
  const Account* account = nullptr;  ///< nullptr: no account of the file could log in
  calc::Variables globals;
  calc::Variables locals;  ///< of calculations outside any script
};

/// A script on its way. Get ( ... ) functions read it.
struct ScriptFrame {
  OpenFile* file = nullptr;
  const Script* script = nullptr;
  calc::Value parameter;
  calc::Value result;
  int lastError = 0;
  bool errorCapture = false;  ///< failures are the script's own business: neither shown nor counted
  calc::Variables locals;
};

struct QueuedScript {
  OpenFile* file = nullptr;
  const Script* script = nullptr;
  calc::Value parameter;
};

class Application : public wrapper::Host {
 public:
  Application();
  ~Application() override;
  Application(const Application&) = delete;
  Application& operator=(const Application&) = delete;

  void SetBehaviour(const HostBehaviour& behaviour);
  const HostBehaviour& behaviour() const { return behaviour_; }
  /// What plug-ins loaded from now on are told.
  HostIdentity& identity() { return identity_; }

  bool LoadPlugin(const std::string& path, std::string& error);
  const std::vector<std::unique_ptr<Plugin>>& plugins() const { return plugins_; }

  /// Opens an export as a file with one window, in front. `error` is one line.
  bool Open(const std::string& path, std::string& error);
  /// Brings the windows of an open file to the front; `name` with or without extension.
  bool Activate(std::u16string_view name, std::string& error);
  const std::vector<std::unique_ptr<OpenFile>>& files() const { return files_; }
  /// The file of the front window; nullptr when none is open.
  OpenFile* activeFile();
  OpenFile* FindFile(std::u16string_view name);
  const OpenFiles& windows() const { return openFiles_; }

  /// The names of the design functions, for listings.
  std::vector<std::u16string> DesignFunctionNames() const;
  /// A design function or a plug-in's function; nullptr when there is none of that name.
  const calc::HostFunction* FindHostFunction(std::u16string_view name);

  /// Evaluates in the context of the active file and the running script. 0, or FileMaker's error.
  int Evaluate(std::u16string_view formula, calc::Value& result);
  /// The same in the context of `file` (nullptr: none).
  int EvaluateIn(OpenFile* file, std::u16string_view formula, calc::Value& result);

  /// Sends one idle message to every plug-in.
  void Idle(int level);

  /// Queues a script as the start-script callback does: 0, 100 (file not open), 825 (the account's privilege set lacks
  /// the extended privilege fmplugin) or 1825 (no such script).
  short StartScript(std::u16string_view fileName, std::u16string_view scriptName, const calc::Value& parameter);
  /// The oldest script that waits to run.
  std::optional<QueuedScript> TakeQueuedScript();

  /// The script that runs now, nullptr when none does; set by whoever runs it.
  ScriptFrame* runningScript = nullptr;

  /// The name for which a calculation failed last because it is neither a field nor a function.
  std::u16string unknownName;

  /// Of calculations while no file is open.
  calc::Variables globals;
  calc::Variables locals;

  /// Ends what is being calculated, and the script that runs, once it is not zero; nullptr: nothing does.
  const std::atomic<int>* cancelFlag = nullptr;
  bool IsCancelled() const { return cancelFlag != nullptr && *cancelFlag != 0; }

  /// Called at once with a line for every exception that a plug-in lets out.
  std::function<void(const std::string& line)> onPluginThrew;

  /// Shuts down and unloads all plug-ins. Returns a line for everything they left behind or did wrong.
  std::vector<std::string> Quit();

  // What plug-ins ask.
  short Evaluate(std::uint64_t file, std::u16string_view expression, calc::Value& result) override;
  short ExecuteSql(std::uint64_t file, std::u16string_view fileName, std::u16string_view sql,
                   std::span<const calc::Value> arguments, wrapper::Rows& rows) override;
  short ConvertFromFileMakerPath(std::uint64_t file, std::u16string_view path, int format,
                                 std::u16string& result) override;
  short ConvertToFileMakerPath(std::uint64_t file, std::u16string_view path, int format,
                               std::u16string& result) override;
  void PluginThrew(const std::string& line) override;

 private:
  OpenFile* FileById(std::uint64_t id);
  calc::Value CallPlugin(const std::u16string& name, std::span<const calc::Value> arguments);

  HostBehaviour behaviour_;
  HostIdentity identity_;
  std::vector<std::unique_ptr<OpenFile>> files_;
  OpenFiles openFiles_;
  const Solution* current_ = nullptr;  // of the calculation being evaluated
  // By folded name. Those of plug-ins are noted when first used.
  std::map<std::u16string, calc::HostFunction> hostFunctions_;
  std::map<std::u16string, calc::HostFunction> pluginFunctions_;
  std::vector<std::unique_ptr<Plugin>> plugins_;
  std::deque<QueuedScript> queuedScripts_;
};

}  // namespace sim
