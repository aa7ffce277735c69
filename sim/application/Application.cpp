#include "application/Application.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "application/Context.h"
#include "application/GetFunctions.h"
#include "application/HostPaths.h"
#include "calc/Engine.h"
#include "calc/Errors.h"
#include "calc/Unicode.h"
#include "solution/SolutionReader.h"
#include "solution/Sql.h"

namespace sim {

namespace errors = calc::errors;

namespace {

constexpr char16_t kPluginPrivilege[] = u"fmplugin";

Application* application = nullptr;  // the callbacks carry no context of their own

FMX_ErrorCode StartScriptCallback(const FMX_Text* fileName, const FMX_Text* scriptName, FMX_ScriptControl,
                                  const FMX_Data* parameter) {
  if (fileName == nullptr || scriptName == nullptr) return errors::kFileMissing;
  const auto value = parameter == nullptr ? calc::Value() : wrapper::ValueOf(*parameter);
  return application->StartScript(wrapper::TextOf(*fileName), wrapper::TextOf(*scriptName), value);
}

FMX_ErrorCode CurrentEnvironmentCallback(FMX_ExprEnv* environment) {
  const OpenFile* file = application->activeFile();
  if (environment == nullptr || file == nullptr) return errors::kFileMissing;
  wrapper::Bind(*environment, file->id);
  return 0;
}

// The account that a file opens with: the one its options name, else the first with full access that may log in.
const Account* OpeningAccount(const Solution& solution) {
  if (!solution.autoLoginAccount.empty()) {
    const Account* account = solution.FindAccount(solution.autoLoginAccount);
    if (account != nullptr && account->enabled) return account;
  }
  for (const auto& account : solution.accounts) {
    if (account.enabled && account.privilegeSetId == kFullAccess) return &account;
  }
  return nullptr;
}

}  // namespace

Application::Application() {
  application = this;
  identity_.startScript = StartScriptCallback;
  identity_.currentEnvironment = CurrentEnvironmentCallback;
  SetBehaviour({});
  wrapper::SetHost(this);
}

Application::~Application() {
  Quit();
  wrapper::SetHost(nullptr);
  application = nullptr;
}

void Application::SetBehaviour(const HostBehaviour& behaviour) {
  behaviour_ = behaviour;
  hostFunctions_.clear();
  for (auto& function : DesignFunctions(openFiles_, current_, behaviour_)) {
    hostFunctions_.emplace(calc::FoldCase(function.name), std::move(function));
  }
}

bool Application::LoadPlugin(const std::string& path, std::string& error) {
  // What a plug-in leaves behind is told by its file name, so that must be its own.
  std::error_code unknown;  // a path that does not exist is the loader's to report
  const auto name = std::filesystem::weakly_canonical(path, unknown).filename();
  const auto sameFile = [&name](const auto& plugin) { return plugin->fileName() == name; };
  if (std::any_of(plugins_.begin(), plugins_.end(), sameFile)) {
    error = "cannot load plug-in " + path + ": one of that name is loaded already";
    return false;
  }
  auto plugin = Plugin::Load(path, identity_, error);
  if (plugin == nullptr) return false;
  plugins_.push_back(std::move(plugin));
  return true;
}

bool Application::Open(const std::string& path, std::string& error) {
  auto file = std::make_unique<OpenFile>();
  if (!ReadSolution(path, file->solution, error)) return false;
  if (FindFile(file->solution.name) != nullptr) {
    error = path + ": a file named \"" + calc::ToUtf8(file->solution.name) + "\" is already open";
    return false;
  }
  file->id = files_.size() + 1;
  file->account = OpeningAccount(file->solution);
  openFiles_.files.push_back(&file->solution);
  openFiles_.windows.insert(openFiles_.windows.begin(), {file->solution.name, &file->solution});
  files_.push_back(std::move(file));
  return true;
}

bool Application::Activate(std::u16string_view name, std::string& error) {
  const OpenFile* file = FindFile(name);
  if (file == nullptr) {
    error = "no file \"" + calc::ToUtf8(name) + "\" is open";
    return false;
  }
  std::stable_partition(openFiles_.windows.begin(), openFiles_.windows.end(),
                        [&](const Window& window) { return window.solution == &file->solution; });
  return true;
}

OpenFile* Application::activeFile() {
  return openFiles_.windows.empty() ? nullptr : FindFile(openFiles_.windows.front().solution->name);
}

OpenFile* Application::FindFile(std::u16string_view name) {
  for (const auto& file : files_) {
    if (calc::EqualIgnoringCase(file->solution.name, WithoutExtension(name))) return file.get();
  }
  return nullptr;
}

OpenFile* Application::FileById(std::uint64_t id) {
  return id == 0 || id > files_.size() ? nullptr : files_[id - 1].get();
}

std::vector<std::u16string> Application::DesignFunctionNames() const {
  std::vector<std::u16string> names;
  for (const auto& [folded, function] : hostFunctions_) names.push_back(function.name);
  return names;
}

const calc::HostFunction* Application::FindHostFunction(std::u16string_view name) {
  const auto folded = calc::FoldCase(name);
  if (const auto own = hostFunctions_.find(folded); own != hostFunctions_.end()) return &own->second;
  const auto* registration = wrapper::FindFunction(name);
  if (registration == nullptr) return nullptr;

  auto [known, isNew] = pluginFunctions_.try_emplace(folded);
  auto& function = known->second;
  function.name = registration->name;
  function.minArguments = registration->minArguments;
  function.maxArguments = registration->maxArguments;
  // Set once, since it may be running now. It looks its function up again: a plug-in may take that back.
  if (isNew) {
    function.call = [this, folded](std::span<const calc::Value> arguments) { return CallPlugin(folded, arguments); };
  }
  return &function;
}

calc::Value Application::CallPlugin(const std::u16string& name, std::span<const calc::Value> arguments) {
  const auto* registration = wrapper::FindFunction(name);
  if (registration == nullptr) return calc::Value::OfError(errors::kNoSuchFunction);
  const auto file =
      std::find_if(files_.begin(), files_.end(), [this](const auto& open) { return &open->solution == current_; });
  calc::Value result;
  const short error = wrapper::Call(*registration, file == files_.end() ? 0 : (*file)->id, arguments, result);
  return error == 0 ? result : calc::Value::OfError(error);
}

int Application::Evaluate(std::u16string_view formula, calc::Value& result) {
  return EvaluateIn(runningScript != nullptr ? runningScript->file : activeFile(), formula, result);
}

int Application::EvaluateIn(OpenFile* file, std::u16string_view formula, calc::Value& result) {
  const Solution* outer = std::exchange(current_, file == nullptr ? nullptr : &file->solution);
  Context context(*this, file);
  const int error = calc::Evaluate(formula, context, result);
  current_ = outer;
  return error;
}

short Application::Evaluate(std::uint64_t file, std::u16string_view expression, calc::Value& result) {
  return static_cast<short>(EvaluateIn(FileById(file), expression, result));
}

short Application::ExecuteSql(std::uint64_t file, std::u16string_view fileName, std::u16string_view sql,
                              std::span<const calc::Value> arguments, wrapper::Rows& rows) {
  const OpenFile* target = fileName.empty() ? FileById(file) : FindFile(fileName);
  if (target == nullptr) return errors::kFileMissing;
  SqlResult result = SelectRows(sql, target->solution, arguments, behaviour_);
  rows = std::move(result.rows);
  return static_cast<short>(result.error);
}

short Application::ConvertFromFileMakerPath(std::uint64_t file, std::u16string_view path, int format,
                                            std::u16string& result) {
  const OpenFile* open = FileById(file);
  const auto converted = FormatPath(MachinePath(path, open == nullptr ? "" : FolderOf(open->solution.path)), format);
  if (converted) result = calc::ToUtf16(*converted);
  return converted ? 0 : errors::kBadArgument;
}

short Application::ConvertToFileMakerPath(std::uint64_t, std::u16string_view path, int format, std::u16string& result) {
  const auto converted = ParsePath(calc::ToUtf8(path), format);
  if (converted) result = u"file:" + FileMakerPath(*converted);
  return converted ? 0 : errors::kBadArgument;
}

void Application::PluginThrew(const std::string& line) {
  if (onPluginThrew) onPluginThrew(line);
}

void Application::Idle(int level) {
  for (const auto& plugin : plugins_) plugin->Idle(level);
}

short Application::StartScript(std::u16string_view fileName, std::u16string_view scriptName,
                               const calc::Value& parameter) {
  OpenFile* file = FindFile(fileName);
  if (file == nullptr) return errors::kFileMissing;
  const PrivilegeSet* set = CurrentPrivilegeSet(Context(*this, file));
  const bool allowed = set != nullptr && std::any_of(set->extendedPrivileges.begin(), set->extendedPrivileges.end(),
                                                     [](const auto& keyword) { return keyword == kPluginPrivilege; });
  if (!allowed) return errors::kNotAuthorised;
  const Script* script = file->solution.FindScript(scriptName);
  if (script == nullptr) return errors::kNoScriptToStart;
  queuedScripts_.push_back({file, script, parameter});
  return 0;
}

std::optional<QueuedScript> Application::TakeQueuedScript() {
  if (queuedScripts_.empty()) return std::nullopt;
  auto script = std::move(queuedScripts_.front());
  queuedScripts_.pop_front();
  return script;
}

std::vector<std::string> Application::Quit() {
  std::vector<std::string> faults;
  for (const auto& plugin : plugins_) {
    for (auto& line : plugin->Shutdown()) faults.push_back(std::move(line));
  }
  for (auto& line : wrapper::Violations()) faults.push_back(std::move(line));
  plugins_.clear();
  return faults;
}

}  // namespace sim
