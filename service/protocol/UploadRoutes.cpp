// Requests with whole files: the live upload that answers a schema request, the snapshot, the form of
// Varnix.UploadFile, and a design that a person adds.
#include "Utf8.h"
#include "designs/DesignStore.h"
#include "http/Form.h"
#include "http/HttpError.h"
#include "http/Message.h"
#include "http/Routes.h"
#include "system/Cryptography.h"

namespace service {
namespace {

std::int64_t KeepFile(Context& context, const char* kind, const std::string& fileName, std::string_view content) {
  if (!IsUtf8(fileName)) throw HttpError(400, "the file name is not UTF-8");
  const auto record = context.store.Add({kind, fileName, std::nullopt, content});
  context.storeChanged();
  context.Log("received " + fileName + ", " + std::to_string(content.size()) + " bytes");
  return record;
}

Response Keep(Context& context, const char* kind, const std::string& fileName, std::string_view content) {
  return JsonAnswer({{"ok", true}, {"record", KeepFile(context, kind, fileName, content)}});
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

// An export that a person adds.
Response TakeDesign(Context& context, const Request& request) {
  const std::string fileName = request.Parameter("filename");
  if (fileName.empty()) throw HttpError(400, "filename is missing");
  if (!LooksLikeExport(request.body)) {
    throw HttpError(400, "this file is not a design: save one in FileMaker with Save a Copy as XML");
  }
  return JsonAnswer({{"record", KeepFile(context, "upload", fileName, request.body)}}, 201);
}

constexpr Route kUploadRoutes[] = {
    {"POST", "/api/live/ingest/*", KeyPlace::kPath, true, false, TakeIngest},
    {"POST", "/api/snapshot/*", KeyPlace::kPath, true, false, TakeSnapshot},
    {"POST", "/operator/designs", KeyPlace::kHeader, true, false, TakeDesign},
    {"POST", "/api/upload", KeyPlace::kBody, true, true, TakeForm},
};

}  // namespace

std::span<const Route> UploadRoutes() { return kUploadRoutes; }

}  // namespace service
