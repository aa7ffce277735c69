// Tools that FileMaker carries out.
#include <algorithm>

#include "designs/DesignJson.h"
#include "designs/OpenDesign.h"
#include "mcp/Arguments.h"
#include "mcp/FileMaker.h"
#include "mcp/Pieces.h"
#include "mcp/Snippet.h"
#include "mcp/Tools.h"

namespace service::mcp {
namespace {

constexpr std::int64_t kWaitSeconds = 50;  // clients wait for a minute

std::chrono::seconds Wait(const Value& arguments) {
  return std::chrono::seconds(Number(arguments, "waitSeconds", kWaitSeconds));
}

// FileMaker's answer to a command that takes no argument or only a file.
std::string Ask(Call& call, const char* type, const Value& arguments) {
  Client client(call.options());
  Order order{type, Wait(arguments)};
  if (arguments.contains("file")) order.arguments["fileName"] = Text(arguments, "file");
  return ResultOf(client, CarryOut(call, client, order));
}

Json LinesOf(const std::string& text) {
  Json lines = Json::array();
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = std::min(text.find_first_of("\r\n", begin), text.size());
    if (end > begin) lines.push_back(text.substr(begin, end - begin));
    begin = end + 1;
  }
  return lines;
}

ToolResult ListFiles(Call& call, const Value& arguments) {
  return {{{"files", LinesOf(Ask(call, "LIST_FILES", arguments))}}};
}

ToolResult ClipboardFormats(Call& call, const Value& arguments) {
  return {{{"formats", LinesOf(Ask(call, "GET_CLIPBOARD_FORMATS", arguments))}}};
}

ToolResult DebugContext(Call& call, const Value& arguments) {
  const std::string report = Ask(call, "DEBUG_CONTEXT", arguments);
  Json context = Json::parse(report, nullptr, false);
  if (!context.is_object()) throw ToolError("FileMaker sent a report that is not a JSON object: " + report);
  return {{{"context", std::move(context)}}, report};
}

ToolResult Piece(const std::string& command, const std::string& xml, const Value& arguments) {
  Json piece{{"command", command}};
  SetPiece(piece, "xml", xml, arguments);
  ToolResult result{std::move(piece)};
  result.text = result.structured["xml"].get<std::string>();
  if (result.structured.contains("nextOffset")) {
    result.more = "This is not all of " + std::to_string(xml.size()) + " bytes: call get_clipboard with command " +
                  command + " and offset " + result.structured["nextOffset"].dump() + " for what follows.";
  }
  return result;
}

ToolResult GetClipboard(Call& call, const Value& arguments) {
  Client client(call.options());
  std::string command = Text(arguments, "command");
  if (!command.empty()) return Piece(command, client.GetBytes(CommandPath(command) + "/result"), arguments);
  Order order{"GET_CLIPBOARD", Wait(arguments)};
  if (arguments.contains("xmlType")) order.arguments["xmlType"] = Text(arguments, "xmlType");
  const nlohmann::json done = CarryOut(call, client, order);
  return Piece(done.at("id"), ResultOf(client, done), arguments);
}

ToolResult SetClipboard(Call& call, const Value& arguments) {
  const std::string xmlType = Text(arguments, "xmlType"), xml = Text(arguments, "xml");
  if (const std::string fault = CheckSnippet(xmlType, xml); !fault.empty()) {
    throw ToolError(fault + ". Nothing was put on the clipboard.");
  }
  Client client(call.options());
  Order order{"SET_CLIPBOARD", Wait(arguments), {{"xmlType", xmlType}, {"xmlContent", xml}}};
  const nlohmann::json done = CarryOut(call, client, order);
  const std::size_t objects = CountObjects(xml);
  const std::string place(PlaceOf(xmlType));
  return {{{"command", done.at("id").get<std::string>()}, {"objects", objects}, {"place", place}},
          std::to_string(objects) + " object(s) are on the clipboard. The user can now paste them with Cmd-V into " +
              place + '.'};
}

// The design in the record; if it was unchanged, the newest design of its file.
StoredDesign ReceivedDesign(const Call& call, Client& client, std::int64_t record, const std::string& command) {
  DesignStore history = OpenHistory(call.options().Folder());
  if (const auto design = history.Find(record)) return *design;
  const std::string name = client.Get("/operator/records?command=" + command).at("records").back().at("name");
  const auto designs = history.List(name.substr(0, name.rfind(".xml")));
  if (designs.empty()) {
    throw ToolError("the design has arrived at " + call.options().url + ", whose data folder is not " +
                    call.options().Folder() + ": start varnix-service mcp with its --data");
  }
  return designs.back();
}

ToolResult GetDesign(Call& call, const Value& arguments) {
  Client client(call.options());
  Order order{"GET_SCHEMA", Wait(arguments)};
  if (arguments.contains("file")) order.arguments["fileName"] = Text(arguments, "file");
  const nlohmann::json done = CarryOut(call, client, order);
  if (!done.contains("result")) throw ToolError("FileMaker sent no design");
  const std::int64_t record = done.at("result");
  const StoredDesign design = ReceivedDesign(call, client, record, done.at("id"));
  return {{{"isNew", design.id == record}, {"design", DescribeDesign(design)}}};
}

constexpr Tool kFileMakerTools[] = {
    {"list_files", "List open files", "Lists the names of the files that are open in FileMaker at this moment.",
     R"({"waitSeconds": "@waitSeconds"})", R"({"files!": ["text"]})", Effect::kNone, ListFiles},
    {"get_clipboard", "Read FileMaker's clipboard",
     "Reads the FileMaker objects that the user has copied (script steps, scripts, fields, tables, layout objects, "
     "custom functions, value lists) as fmxmlsnippet XML. It is also the surest way to learn how FileMaker writes a "
     "step or an object: ask the user to copy a similar one. Long content comes in pieces: repeat with command and "
     "offset.",
     R"({"xmlType": "@xmlType",
         "command": {"type": "string", "description":
           "command of an earlier answer: go on with the content that was read then, without asking FileMaker"},
         "offset": "@pieceOffset", "maxBytes": "@maxBytes", "waitSeconds": "@waitSeconds"})",
     R"({"command!": "text", "bytes!": {"type": "integer", "description": "of the whole content"},
         "nextOffset": "@nextPiece", "xml!": "text"})",
     Effect::kNone, GetClipboard},
    {"set_clipboard", "Put objects on FileMaker's clipboard",
     "Replaces what is on the clipboard with FileMaker objects, given as fmxmlsnippet XML. FileMaker itself is not "
     "changed: the user then pastes with Cmd-V at the place that fits xmlType and sees what was inserted. Use it only "
     "when the user wants to have something pasted, and say where to paste it: XMSS steps into an open script in the "
     "Script Workspace; XMSC whole scripts into its list of scripts; XMFD fields and XMTB tables into Manage "
     "Database; XMFN custom functions into Manage Custom Functions; XMVL value lists into Manage Value Lists; XML2 "
     "layout objects into a layout in Layout mode. The XML is checked for its form, not for whether FileMaker knows "
     "the names in it.",
     R"({"xmlType!": "@xmlType",
         "xml!": {"type": "string", "description": "<fmxmlsnippet type=\"FMObjectList\"> with Step elements for XMSS, Script or Group for XMSC, Field for XMFD, BaseTable for XMTB, CustomFunction for XMFN, ValueList for XMVL; type=\"LayoutObjectList\" with Layout for XML2"},
         "waitSeconds": "@waitSeconds"})",
     R"({"command!": "text", "objects!": "integer",
         "place!": {"type": "string", "description": "where the user can paste"}})",
     Effect::kReplacesClipboard, SetClipboard},
    {"clipboard_formats", "List the clipboard's formats",
     "Lists the names of all formats that are on the clipboard, FileMaker's and others. Useful when get_clipboard "
     "finds nothing.",
     R"({"waitSeconds": "@waitSeconds"})", R"({"formats!": ["text"]})", Effect::kNone, ClipboardFormats},
    {"debug_context", "Report FileMaker's context",
     "Reports in which context FileMaker is at this moment: the frontmost file, its window, layout, account, "
     "privileges and version. With file, also whether that file is visible from there and which scripts it has.",
     R"({"file": {"type": "string", "description": "name of an open file"}, "waitSeconds": "@waitSeconds"})",
     R"({"context!": {"type": "object"}})", Effect::kNone, DebugContext},
    {"get_design", "Fetch a file's present design",
     "Has FileMaker export the complete schema of an open file, stores it as a design and returns its id for "
     "elements, element, search, references and changes. Takes from seconds to minutes, and needs the script \"Varnix "
     "Live Push\" in the file and the file at the front; progress says what FileMaker waits for. Not needed when a "
     "design in designs is recent enough. isNew is false when nothing has changed since the newest design.",
     R"({"file": {"type": "string", "description": "name of an open file; by default the one that signed in"},
         "waitSeconds": "@waitSeconds"})",
     R"({"isNew!": "boolean",
         "design!": {"id!": "integer", "fileUuid": "text", "fileName!": "text", "receivedAt!": "text", "version": "text",
                     "bytes": "integer", "label": "text", "note": "text", "problem": "text"}})",
     Effect::kNone, GetDesign},
};

}  // namespace

std::span<const Tool> FileMakerTools() { return kFileMakerTools; }

}  // namespace service::mcp
