// The tool for the clips that the service has stored.
#include <cctype>

#include "client/Client.h"
#include "mcp/Arguments.h"
#include "mcp/Pieces.h"
#include "mcp/Tools.h"

namespace service::mcp {
namespace {

std::string PercentEncoded(const std::string& text) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string encoded;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (std::isalnum(byte) != 0 && byte < 0x80) {
      encoded += c;
    } else {
      ((encoded += '%') += kDigits[byte >> 4]) += kDigits[byte & 15];
    }
  }
  return encoded;
}

ToolResult ListClips(Client& client, const Value& arguments) {
  std::string path = "/operator/clips?limit=" + std::to_string(Number(arguments, "limit", 50));
  for (const char* name : {"text", "xmlType", "tag"}) {
    if (arguments.contains(name)) path += std::string("&") + name + '=' + PercentEncoded(Text(arguments, name));
  }
  return {Json(client.Get(path))};
}

ToolResult Clips(Call& call, const Value& arguments) {
  Client client(call.options());
  if (!arguments.contains("id")) return ListClips(client, arguments);
  const std::string path = "/operator/clips/" + std::to_string(Number(arguments, "id", 0));
  Json clip = client.Get(path);
  SetPiece(clip, "xml", client.GetBytes(path + "/content"), arguments);
  const std::string text = clip.at("text").get<std::string>() + '\n' + clip.at("xml").get<std::string>();
  return {{{"total", 1}, {"clips", Json::array({std::move(clip)})}}, text};
}

constexpr Tool kClipTools[] = {
    {"clips", "Find earlier clipboard contents",
     "Lists the FileMaker objects that came from the clipboard earlier and that the service has kept, newest first: "
     "kind, title, time and tags. With id, one of them as readable text and as fmxmlsnippet XML, in pieces when it is "
     "long. Use it to find steps, scripts or layout objects that the user copied before, as examples or to hand them "
     "over again with set_clipboard.",
     R"({"text": {"type": "string", "description": "only clips whose title or content contains this, in any case"},
         "xmlType": "@xmlType", "tag": {"type": "string", "description": "only clips with this tag"},
         "limit": {"type": "integer", "minimum": 1, "maximum": 1000, "description": "how many at most; 50 by default"},
         "id": {"type": "integer", "minimum": 1, "description": "only this clip, with its content"},
         "offset": "@pieceOffset", "maxBytes": "@maxBytes"})",
     R"({"total!": "integer",
         "clips!": [{"id!": "integer", "xmlType!": "text", "title!": "text", "label": "text", "receivedAt!": "text",
                     "times": {"type": "integer", "description": "how often it came"}, "bytes": "integer", "tags": ["text"],
                     "text": "text", "xml": "text", "nextOffset": "@nextPiece"}]})",
     Effect::kNone, Clips},
};

}  // namespace

std::span<const Tool> ClipTools() { return kClipTools; }

}  // namespace service::mcp
