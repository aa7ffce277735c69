#include "bridge/Commands.h"

#include <optional>
#include <string>
#include <utility>

#include "bridge/Account.h"
#include "bridge/Background.h"
#include "bridge/ContextFunctions.h"
#include "bridge/CurrentContext.h"
#include "bridge/Polling.h"
#include "bridge/SchemaRequest.h"
#include "bridge/ServiceMessages.h"
#include "clipboard/Clipboard.h"
#include "clipboard/ClipboardTypes.h"
#include "core/State.h"
#include "net/Json.h"

namespace {

constexpr char kNoXml[] =
    "No FileMaker XML found on clipboard. Copy script steps, scripts, layout objects, fields, tables, custom "
    "functions, or value lists in FileMaker first.";
constexpr char kNoFile[] = "No FM file registered. Open your FM file and let Varnix.Register() run first.";

/// What a handler works on. The account is the one in use when the command was taken: a sign-in during an evaluation
/// may change it.
struct Command {
  PendingCmd received;
  Account account;
  const FMX_ExternCallStruct& call;

  std::string Argument(const char* name) const { return JsonGetString(received.json, name); }
};

/// What to report about a command that has ended.
struct Ending {
  std::optional<PushRecord> push;
  std::optional<std::string> error;  // set when the command has failed, even if the push succeeds; may be empty
};

Ending Completed(std::optional<PushRecord> push = std::nullopt) { return {std::move(push), std::nullopt}; }
Ending Failed(std::string error) { return {std::nullopt, std::move(error)}; }

/// Returns nothing when the command stays open.
using Handler = std::optional<Ending> (*)(const Command& command);

std::optional<Ending> GetClipboard(const Command& command) {
  std::string type = command.Argument("xmlType");
  std::string xml, error;
  if (!type.empty() && type != "AUTO" && !Clipboard::GetXML(type, xml, error)) xml.clear();
  if (xml.empty()) {
    std::string probeError;
    if (!ProbeFileMakerClipboardXML(type, xml, probeError) && error.empty()) error = probeError;
  }
  if (xml.empty()) return Failed(error.empty() ? kNoXml : error);
  return Completed(PushRecord{type, std::move(xml), std::nullopt});
}

std::optional<Ending> GetClipboardFormats(const Command&) {
  std::string formats, error;
  const bool listed = Clipboard::GetFormats(formats, error);
  Ending ending = Completed(PushRecord{"CLIPBOARD_FORMATS", formats, "Clipboard Formats"});
  if (!listed) ending.error = error;
  return ending;
}

PushRecord FileList(const Command& command) {
  return {"FILE_LIST", ActiveFiles(CurrentContext(command.call).get()), "Open Files"};
}

std::optional<Ending> ListFiles(const Command& command) { return Completed(FileList(command)); }

std::optional<Ending> DebugContext(const Command& command) {
  const std::string report = ContextReport(CurrentContext(command.call).get(), command.Argument("fileName"));
  return Completed(PushRecord{"CONTEXT_DEBUG", report, "FileMaker Context Debug"});
}

std::optional<Ending> SetClipboard(const Command& command) {
  std::string error;
  const bool written = Clipboard::SetXML(command.Argument("xmlType"), command.Argument("xmlContent"), error);
  return written ? Completed() : Failed(error);
}

std::optional<Ending> GetSchema(const Command& command) {
  std::string target = command.Argument("fileName");
  if (target.empty()) target = g_registeredFileName;
  if (target.empty()) return Failed(kNoFile);
  PushRecord files = FileList(command);
  if (!files.xmlContent.empty()) {
    bg([account = command.account, files = std::move(files)] {
      std::string ignored;
      PostPushRecord(account, files, ignored);
    });
  }
  ArmSchemaRequest(command.account, command.received.id, target);
  return std::nullopt;
}

std::optional<Ending> UnknownCommand(const Command& command) {
  return Failed("Unknown command type: " + command.received.type);
}

constexpr struct {
  const char* type;
  Handler handler;
} kCommands[] = {
    {"GET_CLIPBOARD", GetClipboard}, {"GET_CLIPBOARD_FORMATS", GetClipboardFormats},
    {"LIST_FILES", ListFiles},       {"DEBUG_CONTEXT", DebugContext},
    {"GET_SCHEMA", GetSchema},       {"SET_CLIPBOARD", SetClipboard},
};

Handler HandlerOf(const std::string& type) {
  for (const auto& command : kCommands) {
    if (type == command.type) return command.handler;
  }
  return UnknownCommand;
}

void Report(const Account& account, const std::string& commandId, const Ending& ending) {
  std::string pushError;
  const bool pushed = !ending.push || PostPushRecord(account, *ending.push, pushError);
  EndCommand(account, commandId, ending.error || pushed ? ending.error : pushError);
}

}  // namespace

bool CarryOutPendingCommand(const FMX_ExternCallStruct& call) {
  std::optional<PendingCmd> received = TakeCommand();
  if (!received) return false;
  const Command command{std::move(*received), CurrentAccount(), call};
  if (auto ending = HandlerOf(command.received.type)(command)) {
    bg([account = command.account, id = command.received.id, ending = std::move(*ending)] {
      Report(account, id, ending);
    });
  }
  return true;
}
