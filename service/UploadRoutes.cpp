// What brings whole files: the live upload that answers a schema request, the snapshot and the form of
// Varnix.UploadFile.
#include <algorithm>
#include <map>

#include "Base64Decode.h"
#include "HttpError.h"
#include "Message.h"
#include "Routes.h"
#include "Utf8.h"

namespace service {
namespace {

using httplib::ContentReader;
using httplib::Request;
using httplib::Response;

constexpr const char* kFormParts[] = {"licenseKey", "filename", "file"};

bool IsFormPart(const std::string& name) {
  return std::find(std::begin(kFormParts), std::end(kFormParts), name) != std::end(kFormParts);
}

void Keep(Context& context, const char* kind, const std::string& fileName, std::string_view content,
          Response& response) {
  if (!IsUtf8(fileName)) throw HttpError(400, "the file name is not UTF-8");
  Answer(response, {{"ok", true}, {"record", context.store.Add({kind, fileName, std::nullopt, content})}});
}

// The key stands at the end of the path. A wrong one is told before the file is taken in.
void ReceiveSigned(const Context& context, const Request& request, const ContentReader& reader, Body& body) {
  try {
    context.access.CheckKey(request.matches[1].str());
  } catch (const HttpError&) {
    Discard(request, reader);
    throw;
  }
  body.Receive(request, reader);
}

void TakeIngest(Context& context, const Request& request, Response& response, const ContentReader& reader) {
  const std::string fileName = request.get_param_value("filename");
  Body body(context.limit);
  ReceiveSigned(context, request, reader, body);
  if (fileName.empty()) throw HttpError(400, "filename is missing");
  Keep(context, "ingest", fileName, body.bytes(), response);
}

void TakeSnapshot(Context& context, const Request& request, Response& response, const ContentReader& reader) {
  Body body(context.limit);
  ReceiveSigned(context, request, reader, body);
  const Message message = ReadMessage(body.bytes(), {{"content"}, {"filename"}});
  const auto content = DecodeBase64(message.at("content"));
  if (!content) throw HttpError(400, "content is not base64");
  Keep(context, "snapshot", message.at("filename"), *content, response);
}

void TakeForm(Context& context, const Request& request, Response& response, const ContentReader& reader) {
  if (!request.is_multipart_form_data()) {
    Discard(request, reader);
    throw HttpError(415, "a multipart form is expected here");
  }
  std::map<std::string, Body> parts;
  Body* part = nullptr;
  const bool whole = reader(
      [&](const auto& header) {
        if (!IsFormPart(header.name)) throw HttpError(400, "the form has an unknown part");
        const auto [place, isNew] = parts.try_emplace(header.name, context.limit);
        if (!isNew) throw HttpError(400, "the form has a part twice");
        part = &place->second;
        return true;
      },
      [&](const char* data, std::size_t size) {
        part->Append(data, size);
        return true;
      });
  if (!whole) throw HttpError(400, "the form is incomplete or malformed");
  for (const char* name : kFormParts) {
    if (parts.count(name) == 0) throw HttpError(400, std::string("the form has no part ") + name);
  }
  context.access.CheckKey(parts.at("licenseKey").bytes());
  Keep(context, "upload", parts.at("filename").bytes(), parts.at("file").bytes(), response);
}

struct Upload {
  const char* path;
  void (*take)(Context&, const Request&, Response&, const ContentReader&);
};

constexpr Upload kUploads[] = {
    {"/api/live/ingest/(.*)", TakeIngest},
    {"/api/snapshot/(.*)", TakeSnapshot},
    {"/api/upload", TakeForm},
};

}  // namespace

void AddUploadRoutes(httplib::Server& server, Context& context) {
  for (const auto& upload : kUploads) {
    server.Post(upload.path, [&](const Request& request, Response& response, const ContentReader& reader) {
      upload.take(context, request, response, reader);
    });
  }
}

}  // namespace service
