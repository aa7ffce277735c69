#include "bridge/Commands.h"

#include <optional>
#include <string>
#include <utility>

#include "bridge/Account.h"
#include "bridge/Background.h"
#include "bridge/BridgeState.h"
#include "bridge/CurrentContext.h"
#include "bridge/SchemaRequest.h"
#include "bridge/ServiceMessages.h"
#include "clipboard/Clipboard.h"
#include "clipboard/ClipboardTypes.h"
#include "net/Json.h"
#include "schema/ContextDebug.h"
#include "schema/OpenFiles.h"

namespace {

constexpr char kNoXml[] =
    "No FileMaker XML found on clipboard. Copy script steps, scripts, layout objects, fields, tables, custom "
    "functions, or value lists in FileMaker first.";
constexpr char kNoFile[] = "No FM file registered. Open your FM file and let Varnix.Register() run first.";

/// What the service is to be told of a command that has ended.
struct Ending {
  std::optional<PushRecord> push;
  bool succeeded = true;  // as far as is known before the push
  std::string error;      // may be empty even so
};

Ending Failed(std::string error) { return {.push = {}, .succeeded = false, .error = std::move(error)}; }

/// A command, with the account that it came for: an evaluation may let in a sign-in to another one.
struct Order {
  PendingCmd command;
  Account account;
};

/// A handler returns nothing when its command stays open.
using Handler = std::optional<Ending> (*)(const Order& order, const FMX_ExternCallStruct& call);

std::optional<Ending> GetClipboard(const Order& order, const FMX_ExternCallStruct&) {
  std::string type = JsonGetString(order.command.json, "xmlType");
  std::string xml, error;
  if (!type.empty() && type != "AUTO" && !Clipboard::GetXML(type, xml, error)) xml.clear();
  if (xml.empty()) {
    std::string probeError;
    if (!ProbeFileMakerClipboardXML(type, xml, probeError) && error.empty()) error = probeError;
  }
  if (xml.empty()) return Failed(error.empty() ? kNoXml : error);
  return Ending{.push = PushRecord{type, std::move(xml), std::nullopt}, .succeeded = true, .error = {}};
}

std::optional<Ending> GetClipboardFormats(const Order&, const FMX_ExternCallStruct&) {
  std::string formats, error;
  const bool listed = Clipboard::GetFormats(formats, error);
  return Ending{PushRecord{"CLIPBOARD_FORMATS", formats, "Clipboard Formats"}, listed, error};
}

PushRecord FileList(const FMX_ExternCallStruct& call) {
  return {"FILE_LIST", BuildActiveFileList(CurrentContext(call).get()), "Open Files"};
}

std::optional<Ending> ListFiles(const Order&, const FMX_ExternCallStruct& call) {
  return Ending{.push = FileList(call), .succeeded = true, .error = {}};
}

std::optional<Ending> DebugContext(const Order& order, const FMX_ExternCallStruct& call) {
  const std::string report =
      BuildContextDebug(CurrentContext(call).get(), JsonGetString(order.command.json, "fileName"));
  return Ending{PushRecord{"CONTEXT_DEBUG", report, "FileMaker Context Debug"}, true, {}};
}

std::optional<Ending> SetClipboard(const Order& order, const FMX_ExternCallStruct&) {
  const std::string type = JsonGetString(order.command.json, "xmlType");
  const std::string xml = JsonGetString(order.command.json, "xmlContent");
  std::string error;
  if (!Clipboard::SetXML(type, xml, error)) return Failed(error);
  return Ending{};
}

std::optional<Ending> GetSchema(const Order& order, const FMX_ExternCallStruct& call) {
  std::string target = JsonGetString(order.command.json, "fileName");
  if (target.empty()) target = g_registeredFileName;
  if (target.empty()) return Failed(kNoFile);
  PushRecord files = FileList(call);
  if (!files.xmlContent.empty()) {
    bg([account = order.account, files = std::move(files)] {
      std::string ignored;
      PostPushRecord(account, files, ignored);
    });
  }
  ArmSchemaRequest(order.account, order.command.id, target);
  return std::nullopt;
}

std::optional<Ending> UnknownCommand(const Order& order, const FMX_ExternCallStruct&) {
  return Failed("Unknown command type: " + order.command.type);
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

void Report(const Account& account, const std::string& commandId, Ending ending) {
  if (ending.push) {
    std::string pushError;
    const bool pushed = PostPushRecord(account, *ending.push, pushError);
    if (ending.succeeded) {
      ending.succeeded = pushed;
      ending.error = pushError;
    }
  }
  SendComplete(account.baseUrl, account.licenseKey, commandId, ending.succeeded ? "completed" : "failed", ending.error);
}

}  // namespace

bool CarryOutPendingCommand(const FMX_ExternCallStruct& call) {
  if (!g_hasPendingCmd.exchange(false)) return false;
  const Order order{std::exchange(g_pendingCmd, {}), CurrentAccount()};
  std::optional<Ending> ending = HandlerOf(order.command.type)(order, call);
  if (ending) {
    bg([account = order.account, id = order.command.id, ending = std::move(*ending)]() mutable {
      Report(account, id, std::move(ending));
    });
  }
  return true;
}
