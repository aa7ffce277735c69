#include "clipboard/ClipboardFunctions.h"

#include <string>

#include "clipboard/Clipboard.h"
#include "clipboard/ClipboardTypes.h"
#include "core/HostText.h"

namespace {

constexpr char kTextEmpty[] = "ERROR: plain text clipboard is empty.";
constexpr char kNoSnippet[] = "ERROR: clipboard text does not look like fmxmlsnippet XML.";

std::string SetXML(const std::string& type, const std::string& xml) {
  std::string error = EmptyArgumentError({{"xmlType", type}, {"xmlContent", xml}});
  if (!error.empty()) return error;
  return Clipboard::SetXML(type, xml, error) ? "OK" : error;
}

std::string GetXML(const std::string& type) {
  std::string xml, error, foundType;
  if (type.empty() || type == "AUTO" || type == "auto") {
    return ProbeFileMakerClipboardXML(foundType, xml, error) ? xml : error;
  }
  Clipboard::GetXML(type, xml, error);
  return xml;
}

// `type` null: detected from the text. An explicit empty type is an error, not the same as none.
std::string PrepareXML(const std::string* type) {
  std::string text, error;
  if (!Clipboard::GetText(text, error)) return error;
  if (text.empty()) return kTextEmpty;
  if (!HoldsSnippet(text)) return kNoSnippet;
  const std::string kind = type != nullptr ? *type : DetectXmlClipboardType(text);
  error = EmptyArgumentError({{"xmlType", kind}});
  if (!error.empty()) return error;
  return Clipboard::SetXML(kind, text, error) ? "OK: " + kind : error;
}

}  // namespace

fmx::errcode Do_SetXMLClipboard(short, const fmx::ExprEnv&, const fmx::DataVect& args, fmx::Data& result) {
  SetTextResult(SetXML(GetTextArg(args, 0), GetTextArg(args, 1)), result);
  return 0;
}

fmx::errcode Do_GetXMLClipboard(short, const fmx::ExprEnv&, const fmx::DataVect& args, fmx::Data& result) {
  SetTextResult(GetXML(GetTextArg(args, 0)), result);
  return 0;
}

fmx::errcode Do_GetTextClipboard(short, const fmx::ExprEnv&, const fmx::DataVect&, fmx::Data& result) {
  std::string text, error;
  Clipboard::GetText(text, error);
  SetTextResult(text, result);
  return 0;
}

fmx::errcode Do_SetTextClipboard(short, const fmx::ExprEnv&, const fmx::DataVect& args, fmx::Data& result) {
  std::string error;
  SetTextResult(Clipboard::SetText(GetTextArg(args, 0), error) ? "OK" : error, result);
  return 0;
}

fmx::errcode Do_ClipboardFormats(short, const fmx::ExprEnv&, const fmx::DataVect&, fmx::Data& result) {
  std::string list, error;
  Clipboard::GetFormats(list, error);
  SetTextResult(list, result);
  return 0;
}

fmx::errcode Do_PrepareXMLClipboard(short, const fmx::ExprEnv&, const fmx::DataVect& args, fmx::Data& result) {
  if (args.Size() == 0) {
    SetTextResult(PrepareXML(nullptr), result);
  } else {
    const std::string type = GetTextArg(args, 0);
    SetTextResult(PrepareXML(&type), result);
  }
  return 0;
}
