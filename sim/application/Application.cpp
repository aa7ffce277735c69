#include "application/Application.h"

#include <algorithm>
#include <utility>

#include "application/Context.h"
#include "application/GetFunctions.h"
#include "application/HostPaths.h"
#include "calc/Engine.h"
#include "calc/Errors.h"
#include "calc/Temporarily.h"
#include "calc/Unicode.h"
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
  const OpenFile* file = application->files().active();
  if (environment == nullptr || file == nullptr) return errors::kFileMissing;
  wrapper::Bind(*environment, file->id);
  return 0;
}

}  // namespace

Application::Application() {
  application = this;
  plugins_.identity().startScript = StartScriptCallback;
  plugins_.identity().currentEnvironment = CurrentEnvironmentCallback;
  SetBehaviour({});
  wrapper::SetHost(this);
}

Application::~Application() {
  plugins_.Quit();
  wrapper::SetHost(nullptr);
  application = nullptr;
}

void Application::SetBehaviour(const HostBehaviour& behaviour) {
  behaviour_ = behaviour;
  hostFunctions_.clear();
  for (auto& function : DesignFunctions(files_.windows(), current_, behaviour_)) {
    hostFunctions_.emplace(calc::FoldCase(function.name), std::move(function));
  }
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
  // Set once, because it may be running now. It looks the function up at each call: a plug-in may unregister it.
  if (isNew) {
    function.call = [this, folded](std::span<const calc::Value> arguments) { return CallPlugin(folded, arguments); };
  }
  return &function;
}

calc::Value Application::CallPlugin(const std::u16string& name, std::span<const calc::Value> arguments) {
  const auto* registration = wrapper::FindFunction(name);
  if (registration == nullptr) return calc::Value::OfError(errors::kNoSuchFunction);
  calc::Value result;
  const short error = wrapper::Call(*registration, files_.IdOf(current_), arguments, result);
  return error == 0 ? result : calc::Value::OfError(error);
}

int Application::Evaluate(std::u16string_view formula, calc::Value& result) {
  return EvaluateIn(runningScript != nullptr ? runningScript->file : files_.active(), formula, result);
}

int Application::EvaluateIn(OpenFile* file, std::u16string_view formula, calc::Value& result) {
  const calc::Temporarily<const Solution*> current(current_, file == nullptr ? nullptr : &file->solution);
  Context context(*this, file);
  return calc::Evaluate(formula, context, result);
}

short Application::Evaluate(std::uint64_t file, std::u16string_view expression, calc::Value& result) {
  return static_cast<short>(EvaluateIn(files_.ById(file), expression, result));
}

short Application::ExecuteSql(std::uint64_t file, std::u16string_view fileName, std::u16string_view sql,
                              std::span<const calc::Value> arguments, wrapper::Rows& rows) {
  const OpenFile* target = fileName.empty() ? files_.ById(file) : files_.Find(fileName);
  if (target == nullptr) return errors::kFileMissing;
  SqlResult result = SelectRows(sql, target->solution, arguments, behaviour_);
  rows = std::move(result.rows);
  return static_cast<short>(result.error);
}

short Application::ConvertFromFileMakerPath(std::uint64_t file, std::u16string_view path, int format,
                                            std::u16string& result) {
  const OpenFile* open = files_.ById(file);
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

short Application::StartScript(std::u16string_view fileName, std::u16string_view scriptName,
                               const calc::Value& parameter) {
  OpenFile* file = files_.Find(fileName);
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

}  // namespace sim
