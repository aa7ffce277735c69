#include "mcp/FileMaker.h"

#include "client/Progress.h"
#include "client/Result.h"
#include "mcp/Tools.h"
#include "protocol/CommandTypes.h"

namespace service::mcp {
namespace {

using Clock = std::chrono::steady_clock;
using Command = nlohmann::json;

constexpr auto kLookInterval = std::chrono::milliseconds(100);
constexpr auto kProgressInterval = std::chrono::seconds(1);

// True if the command was withdrawn, false if FileMaker fetched it first. If the service fails, the command expires.
bool Withdraw(Client& client, const std::string& path) try {
  client.Post(path + "/cancel", Command::object());
  return true;
} catch (const ServiceError&) {
  return false;
}

std::string LastDiagnostic(const Command& command) {
  const auto& diagnostics = command.at("diagnostics");
  return diagnostics.empty() ? "" : diagnostics.back().at("message").get<std::string>();
}

// Why nobody has fetched a command, and what the user can do.
std::string WhyNotTaken(const Command& status) {
  const auto& seconds = status.at("secondsSincePoll");
  if (seconds.is_null()) {
    return "No FileMaker has asked the service for commands since it was started. Ask the user to open FileMaker with "
           "the Varnix plug-in and to sign in: \"varnix-service sign-in\" prints the line to evaluate there.";
  }
  if (!status.at("connected").get<bool>()) {
    return "FileMaker last asked the service for commands " + DescribeDuration(seconds) +
           " ago. It is not running, or a dialog, a running script or the Script Debugger keeps it busy. Ask the user "
           "to bring FileMaker to the front and to close dialogs, then try again.";
  }
  return "FileMaker is connected but busy with another command. Try again.";
}

std::string WhyNotFinished(const Command& command) {
  const std::string diagnostic = LastDiagnostic(command);
  std::string text = "FileMaker fetched the command " + DescribeDuration(command.at("secondsInState")) +
                     " ago and has not finished it. ";
  if (!diagnostic.empty()) text += "It last reported: " + diagnostic + ' ';
  text += "A dialog, a running script or the Script Debugger may keep it busy: ask the user to look. ";
  return text + (command.at("type") == "GET_SCHEMA" ? "The design appears in designs when FileMaker finishes it later."
                                                    : "If you call this tool again, the command runs again.");
}

// Returns the command if FileMaker finished it just before it could be withdrawn; otherwise throws the reason.
Command GiveUp(Call& call, Client& client, const std::string& path, const Command& command) {
  const bool isQueued = command.at("state") == "queued";
  const bool isWithdrawn = isQueued && Withdraw(client, path);
  if (!call.Pause({})) throw ToolError("standard input was closed before FileMaker answered");
  const Command now = isQueued && !isWithdrawn ? client.Get(path) : command;
  if (IsFinished(now)) return now;
  throw ToolError("FileMaker did not answer in time. " +
                  (now.at("state") == "queued" || isWithdrawn
                       ? WhyNotTaken(client.Get("/operator/status")) + " Nothing was done."
                       : WhyNotFinished(now)));
}

void CheckCompleted(const Command& command) {
  const std::string state = command.at("state");
  if (state == "completed") return;
  if (state == "failed") throw ToolError("FileMaker: " + command.value("error", "it failed and gave no reason"));
  if (IsForgotten(command))
    throw ToolError("The user told Varnix to stop waiting for this command. FileMaker may still carry it out.");
  throw ToolError(state == "cancelled" ? "The user withdrew the command."
                                       : "The command expired before FileMaker fetched it. Nothing was done.");
}

class ProgressReport {
 public:
  explicit ProgressReport(Call& call) : call_(call) {}

  void Show(const std::string& text) {
    const auto now = Clock::now();
    if (text == shown_ && now - last_ < kProgressInterval) return;
    last_ = now;
    shown_ = text;
    call_.ShowProgress(std::chrono::duration<double>(now - begin_).count(), text);
  }

 private:
  Call& call_;
  const Clock::time_point begin_ = Clock::now();
  Clock::time_point last_ = begin_ - kProgressInterval;
  std::string shown_;
};

std::string StateOf(const Command& command) {
  if (command.at("state") == "queued") return "waiting for FileMaker to fetch the command";
  const std::string diagnostic = LastDiagnostic(command);
  return diagnostic.empty() ? "FileMaker is at work" : diagnostic;
}

}  // namespace

Command CarryOut(Call& call, Client& client, const Order& order) {
  Command message = order.arguments;
  message["type"] = order.type;
  message["expires"] = std::to_string(order.wait.count() + 1);  // in case this process dies before it can withdraw it
  const std::string path = CommandPath(client.Post("/operator/commands", message).at("id"));
  const auto end = Clock::now() + order.wait;
  ProgressReport progress(call);
  Command command;
  try {
    command = AwaitCommand(client, path,
                           {[&] { return call.Pause(kLookInterval) && Clock::now() < end; },
                            [&](const Command& state) { progress.Show(StateOf(state)); },
                            [&](const std::string& trouble) { progress.Show(trouble); }});
  } catch (...) {  // cancelled, or the service fails: nobody waits for the command any more
    Withdraw(client, path);
    throw;
  }
  if (!IsFinished(command)) command = GiveUp(call, client, path, command);
  CheckCompleted(command);
  return command;
}

std::string ResultOf(Client& client, const Command& command) {
  if (!command.contains("result")) throw ToolError("FileMaker sent no result");
  return client.GetBytes(CommandPath(command.at("id")) + "/result");
}

}  // namespace service::mcp
