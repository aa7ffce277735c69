#include "application/ScriptRunner.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <utility>

#include "application/Context.h"
#include "application/GetFunctions.h"
#include "application/HostPaths.h"
#include "calc/Errors.h"
#include "calc/Temporarily.h"
#include "calc/Unicode.h"

namespace sim {

namespace errors = calc::errors;

namespace {

constexpr double kLongestPauseSeconds = 86400;

// Carries out the steps of one run.
class Execution {
 public:
  Execution(Application& application, const ScriptSurroundings& surroundings, ScriptFrame& frame)
      : application_(application), surroundings_(surroundings), frame_(frame), steps_(frame.script->steps) {}

  bool Run() {
    while (position_ < steps_.size() && !exited_) {
      const ScriptStep& step = steps_[position_];
      if (step.enabled) Perform(step);
      if (application_.IsCancelled()) {
        Report(step, "was cancelled, which ends the script");
        return false;
      }
      ++position_;
      surroundings_.idle(kFMXT_ScriptRunning, std::chrono::milliseconds(0));
    }
    return !failed_;
  }

 private:
  using StepFunction = void (Execution::*)(const ScriptStep&);

  void Perform(const ScriptStep& step) {
    static const std::map<int, StepFunction> kSteps = {{kStepSaveAsXml, &Execution::SaveCopyAsXml},
                                                       {kStepPause, &Execution::Pause},
                                                       {kStepIf, &Execution::EnterBlock},
                                                       {kStepElse, &Execution::LeaveBlock},
                                                       {kStepElseIf, &Execution::LeaveBlock},
                                                       {kStepEndIf, &Execution::Nothing},
                                                       {kStepComment, &Execution::Nothing},
                                                       {kStepShowDialog, &Execution::ShowDialog},
                                                       {kStepExitScript, &Execution::Exit},
                                                       {kStepSetVariable, &Execution::SetVariable},
                                                       {kStepSetErrorCapture, &Execution::SetErrorCapture}};
    const auto known = kSteps.find(step.id);
    if (known == kSteps.end()) return Report(step, "is not simulated; skipped");
    stepError_ = 0;
    (this->*known->second)(step);
  }

  void Report(const ScriptStep& step, const std::string& what) {
    surroundings_.show("script \"" + calc::ToUtf8(frame_.script->name) + "\", step " + std::to_string(position_ + 1) +
                       " \"" + calc::ToUtf8(step.name) + "\" " + what);
  }

  void Fail(const ScriptStep& step, int error, const std::string& what) {
    frame_.lastError = stepError_ = error;
    if (frame_.errorCapture) return;
    failed_ = true;
    Report(step, "failed with error " + std::to_string(error) + ": " + what);
  }

  // An empty formula gives empty text. A formula that fails while running is shown as a failure, but the step goes on
  // with "?", as in FileMaker. A formula that cannot be parsed has no value, and the step does nothing.
  bool Evaluate(const ScriptStep& step, const std::u16string& formula, calc::Value& value) {
    if (formula.empty()) {
      value = {};
      return true;
    }
    const int error = application_.EvaluateIn(frame_.file, formula, value);
    if (application_.IsCancelled()) return false;
    if (error != 0) Fail(step, error, calc::ToUtf8(formula));
    return error == 0 || value.IsError();
  }

  // "?" counts as true, as it does for the function If.
  bool Holds(const ScriptStep& step) {
    calc::Value condition;
    return Evaluate(step, step.calculation, condition) && condition.AsBoolean();
  }

  // The position of the next Else If, Else or End If of the block entered at the current position.
  std::size_t NextBranch(std::size_t from) const {
    int depth = 0;
    for (std::size_t i = from + 1; i < steps_.size(); ++i) {
      const ScriptStep& step = steps_[i];
      if (!step.enabled) continue;
      if (step.id == kStepIf) ++depth;
      const bool branch = step.id == kStepElseIf || step.id == kStepElse || step.id == kStepEndIf;
      if (branch && depth == 0) return i;
      if (step.id == kStepEndIf) --depth;
    }
    return steps_.size();
  }

  void EnterBlock(const ScriptStep& step) {
    if (Holds(step)) return;
    for (position_ = NextBranch(position_); position_ < steps_.size(); position_ = NextBranch(position_)) {
      const ScriptStep& branch = steps_[position_];
      if (branch.id != kStepElseIf || Holds(branch)) return;
    }
  }

  // An Else or Else If that is reached from above ends that branch.
  void LeaveBlock(const ScriptStep&) {
    while (position_ < steps_.size() && steps_[position_].id != kStepEndIf) position_ = NextBranch(position_);
  }

  void Nothing(const ScriptStep&) {}

  void SetErrorCapture(const ScriptStep& step) { frame_.errorCapture = step.on; }

  void SetVariable(const ScriptStep& step) {
    calc::Value value, repetition;
    if (!Evaluate(step, step.calculation, value) || !Evaluate(step, step.repetition, repetition)) return;
    const bool global = step.text.starts_with(u"$$");
    if (!step.text.starts_with(u'$')) return Fail(step, errors::kFileMissing, "no variable is named");
    const int index = step.repetition.empty() ? 1 : static_cast<int>(repetition.AsNumber().ToInteger());
    auto& variables = global ? frame_.file->globals : frame_.locals;
    variables[{calc::FoldCase(std::u16string_view(step.text).substr(global ? 2 : 1)), index}] = value;
    frame_.lastError = stepError_;
  }

  void Exit(const ScriptStep& step) {
    exited_ = true;
    Evaluate(step, step.calculation, frame_.result);
  }

  void Pause(const ScriptStep& step) {
    if (step.calculation.empty()) return Report(step, "would wait for the user; continuing");
    calc::Value seconds;
    if (!Evaluate(step, step.calculation, seconds)) return;
    const double bounded = std::clamp(seconds.AsNumber().ToDouble(), 0.0, kLongestPauseSeconds);
    surroundings_.idle(kFMXT_ScriptPaused, std::chrono::milliseconds(static_cast<long long>(bounded * 1000)));
  }

  void ShowDialog(const ScriptStep& step) {
    calc::Value title, message;
    if (!Evaluate(step, step.title, title) || !Evaluate(step, step.calculation, message)) return;
    surroundings_.show("dialog \"" + calc::ToUtf8(title.AsText()) + "\": " + calc::ToUtf8(message.AsText()));
    frame_.lastError = stepError_;
  }

  // Nothing in a simulated file changes, so the copy is the export that the file was opened from. It goes to the first
  // destination that can be written.
  void SaveCopyAsXml(const ScriptStep& step) {
    const PrivilegeSet* set = CurrentPrivilegeSet(Context(application_, frame_.file));
    if (set == nullptr || set->id != kFullAccess) return Fail(step, errors::kNoPrivilege, "it needs full access");
    calc::Value window;
    if (!Evaluate(step, step.calculation, window)) return;
    if (step.destinations.empty())
      return Fail(step, errors::kCancelled, "it names no file, and the simulator has no dialog to ask for one");
    const OpenFile* file = frame_.file;
    if (!step.calculation.empty()) file = FileOfWindow(window.AsText());
    if (file == nullptr) return Fail(step, errors::kFileMissing, "no window \"" + calc::ToUtf8(window.AsText()) + "\"");
    std::string failures;
    for (const auto& destination : step.destinations) {
      const std::string path = MachinePath(DestinationPath(destination), FolderOf(frame_.file->solution.path));
      std::error_code failure;
      std::filesystem::copy_file(file->solution.path, path, failure);  // like FileMaker, never over another file
      if (!failure) {
        frame_.lastError = stepError_;
        return;
      }
      failures += (failures.empty() ? "" : "; ") + path + ": " + failure.message();
    }
    Fail(step, errors::kCannotCreateFile, failures);
  }

  const OpenFile* FileOfWindow(const std::u16string& name) {
    for (const auto& window : application_.files().windows().windows) {
      if (calc::EqualIgnoringCase(window.name, name)) return application_.files().Find(window.solution->name);
    }
    return nullptr;
  }

  std::u16string DestinationPath(const std::u16string& destination) {
    if (!destination.starts_with(u'$')) return destination;
    calc::Value path;
    return application_.EvaluateIn(frame_.file, destination, path) == 0 ? path.AsText() : u"";
  }

  Application& application_;
  const ScriptSurroundings& surroundings_;
  ScriptFrame& frame_;
  const std::vector<ScriptStep>& steps_;
  std::size_t position_ = 0;
  int stepError_ = 0;  // of the current step
  bool exited_ = false;
  bool failed_ = false;
};

}  // namespace

bool RunScript(Application& application, const ScriptSurroundings& surroundings, OpenFile& file, const Script& script,
               const calc::Value& parameter, calc::Value& result) {
  ScriptFrame frame;
  frame.file = &file;
  frame.script = &script;
  frame.parameter = parameter;
  const calc::Temporarily<ScriptFrame*> running(application.runningScript, &frame);
  const bool succeeded = Execution(application, surroundings, frame).Run();
  result = frame.result;
  return succeeded;
}

}  // namespace sim
