// Requests that carry whole files: the live upload that answers a schema request, the snapshot and the form of
// Varnix.UploadFile.
#include "Cryptography.h"
#include "Form.h"
#include "HttpError.h"
#include "Message.h"
#include "Routes.h"
#include "Utf8.h"

namespace service {
namespace {

Response Keep(Context& context, const char* kind, const std::string& fileName, std::string_view content) {
  if (!IsUtf8(fileName)) throw HttpError(400, "the file name is not UTF-8");
  const auto record = context.store.Add({kind, fileName, std::nullopt, content});
  context.storeChanged();
  context.Log("received " + fileName + ", " + std::to_string(content.size()) + " bytes");
  return JsonAnswer({{"ok", true}, {"record", record}});
}

Response TakeIngest(Context& context, const Request& request) {
  const std::string fileName = request.Parameter("filename");
  if (fileName.empty()) throw HttpError(400, "filename is missing");
  return Keep(context, "ingest", fileName, request.body);
}

Response TakeSnapshot(Context& context, const Request& request) {
  const Message message = ReadMessage(request.body, {{"content"}, {"filename"}});
  const auto content = DecodeBase64(message.at("content"));
  if (!content) throw HttpError(400, "content is not base64");
  return Keep(context, "snapshot", message.at("filename"), *content);
}

Response TakeForm(Context& context, const Request& request) {
  const auto parts = ReadForm(request.body, request.Header("content-type"));
  for (const char* name : {"licenseKey", "filename", "file"}) {
    if (!parts.contains(name)) throw HttpError(400, std::string("the form has no part ") + name);
  }
  if (parts.size() > 3) throw HttpError(400, "the form has an unknown part");
  context.access.CheckKey(parts.at("licenseKey"));
  return Keep(context, "upload", std::string(parts.at("filename")), parts.at("file"));
}

constexpr Route kRoutes[] = {
    {"POST", "/api/live/ingest/*", KeyPlace::kPath, true, false, TakeIngest},
    {"POST", "/api/snapshot/*", KeyPlace::kPath, true, false, TakeSnapshot},
    {"POST", "/api/upload", KeyPlace::kBody, true, true, TakeForm},
};

}  // namespace

std::span<const Route> UploadRoutes() { return kRoutes; }

}  // namespace service
