#include "net/ServiceFunctions.h"

#include <string>
#include <utility>

#include "clipboard/Clipboard.h"
#include "core/HostText.h"
#include "host/FileIO.h"
#include "net/Base64.h"
#include "net/JsonWriter.h"
#include "net/Network.h"

namespace {

std::string SendJson(const std::string& url, std::string body) {
  std::string response, error;
  return Network::Post(url, std::move(body), response, error) ? std::move(response) : std::move(error);
}

// The file and its base64 are in memory at the same time, but each only once.
bool ReadSnapshot(const std::string& path, std::string& record, std::string& error) {
  constexpr std::size_t kPunctuation = sizeof R"({"content":"","filename":""})", kLongestEscape = 6;
  std::string bytes;
  if (!FileIO::Read(path, bytes, error)) return false;
  const std::string name = path.substr(path.rfind('/') + 1);
  JsonWriter json(kPunctuation + Base64Length(bytes.size()) + kLongestEscape * name.size());
  record = json.Base64("content", bytes).Text("filename", name).Finish();
  return true;
}

std::string PushSnapshot(const std::string& ingestUrl, const std::string& xmlPath) {
  std::string record, error;
  if (!ReadSnapshot(xmlPath, record, error)) return error;
  return SendJson(ingestUrl, std::move(record));
}

std::string PushScript(const std::string& licenseKey, const std::string& bridgeUrl, const std::string& xmlType,
                       const std::string& label) {
  std::string xml, response, error;
  if (!Clipboard::GetXML(xmlType, xml, error)) return error;
  if (xml.empty()) return "ERROR: No " + xmlType + " XML on clipboard. Copy the FM object first.";
  JsonWriter record;
  record.Text("licenseKey", licenseKey).Text("xmlType", xmlType).Text("xmlContent", xml).Text("label", label);
  return Network::Post(bridgeUrl, record.Finish(), response, error) ? "OK" : error;
}

}  // namespace

fmx::errcode Do_HTTPPost(short, const fmx::ExprEnv&, const fmx::DataVect& args, fmx::Data& result) {
  const std::string url = GetTextArg(args, 0);
  std::string jsonBody = GetTextArg(args, 1);
  const std::string error = EmptyArgumentError({{"url", url}, {"jsonBody", jsonBody}});
  SetTextResult(error.empty() ? SendJson(url, std::move(jsonBody)) : error, result);
  return 0;
}

fmx::errcode Do_UploadFile(short, const fmx::ExprEnv&, const fmx::DataVect& args, fmx::Data& result) {
  std::string response, error;
  const bool sent = Network::PostMultipart(GetTextArg(args, 0), GetTextArg(args, 1), GetTextArg(args, 2),
                                           GetTextArg(args, 3), response, error);
  SetTextResult(sent ? response : error, result);
  return 0;
}

fmx::errcode Do_PushSnapshot(short, const fmx::ExprEnv&, const fmx::DataVect& args, fmx::Data& result) {
  const std::string ingestUrl = GetTextArg(args, 0);
  const std::string xmlPath = GetTextArg(args, 1);
  const std::string error = EmptyArgumentError({{"ingestUrl", ingestUrl}, {"xmlPath", xmlPath}});
  SetTextResult(error.empty() ? PushSnapshot(ingestUrl, xmlPath) : error, result);
  return 0;
}

fmx::errcode Do_PushScript(short, const fmx::ExprEnv&, const fmx::DataVect& args, fmx::Data& result) {
  const std::string licenseKey = GetTextArg(args, 0);
  const std::string bridgeUrl = GetTextArg(args, 1);
  const std::string xmlType = GetTextArg(args, 2);
  const std::string label = GetTextArg(args, 3);
  const std::string error =
      EmptyArgumentError({{"licenseKey", licenseKey}, {"bridgeUrl", bridgeUrl}, {"xmlType", xmlType}});
  SetTextResult(error.empty() ? PushScript(licenseKey, bridgeUrl, xmlType, label) : error, result);
  return 0;
}
