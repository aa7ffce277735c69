#include "mcp/Pieces.h"

#include "mcp/Arguments.h"
#include "mcp/Tools.h"

namespace service::mcp {
namespace {

constexpr std::int64_t kPieceBytes = 100'000;

std::size_t EndOfPiece(const std::string& text, std::size_t begin, std::size_t bytes) {
  if (text.size() - begin <= bytes) return text.size();
  std::size_t end = begin + bytes;
  while (end > begin + 1 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
  return end;
}

}  // namespace

void SetPiece(Json& json, const char* name, const std::string& text, const Value& arguments) {
  const auto begin = static_cast<std::size_t>(Number(arguments, "offset", 0));
  if (begin > text.size())
    throw ToolError("offset is beyond the end: the text has " + std::to_string(text.size()) + " bytes");
  const auto end = EndOfPiece(text, begin, static_cast<std::size_t>(Number(arguments, "maxBytes", kPieceBytes)));
  json["bytes"] = text.size();
  if (end < text.size()) json["nextOffset"] = end;
  json[name] = text.substr(begin, end - begin);
}

}  // namespace service::mcp
