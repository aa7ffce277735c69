// The operator interface to the clips.
#include "export/ExportText.h"
#include "http/HttpError.h"
#include "http/Message.h"
#include "http/Parameters.h"
#include "http/Routes.h"
#include "snippet/Snippet.h"

namespace service {
namespace {

Json Describe(const Clip& clip) {
  return {{"id", clip.id},
          {"xmlType", clip.xmlType},
          {"title", clip.title},
          {"label", clip.label.value_or("")},
          {"receivedAt", clip.receivedAt},
          {"times", clip.times},
          {"bytes", clip.bytes},
          {"tags", clip.tags}};
}

Clip NamedClip(Context& context, const Request& request) {
  const auto id = WholeNumber(request.captures[0]);
  auto clip = id ? context.store.FindClip(*id) : std::nullopt;
  if (!clip) throw HttpError(404, "no such clip");
  return *std::move(clip);
}

Response ListClips(Context& context, const Request& request) {
  const auto list = context.store.Clips(
      {request.Parameter("text"), request.Parameter("xmlType"), request.Parameter("tag")}, Rows(request));
  Json clips = Json::array();
  for (const Clip& clip : list.clips) clips.push_back(Describe(clip));
  return JsonAnswer({{"total", list.total}, {"clips", std::move(clips)}});
}

Response ShowClip(Context& context, const Request& request) {
  const Clip clip = NamedClip(context, request);
  std::string error;
  const auto snippet = solution::ReadSnippet(context.store.ClipContent(clip.id), error);
  Json json = Describe(clip);
  json["text"] = snippet ? snippet->text : "This clip cannot be shown as text: it " + error + '\n';
  return JsonAnswer(json);
}

Response SendClip(Context& context, const Request& request) {
  return {200, context.store.ClipContent(NamedClip(context, request).id), "application/octet-stream"};
}

// The plug-in expects UTF-8.
std::string Decoded(std::string_view bytes) {
  std::vector<std::string> notes;
  try {
    return solution::DecodeExport(std::string(bytes), notes);
  } catch (const solution::Refusal& refusal) {
    throw HttpError(400, "the content " + refusal.reason);
  }
}

Response AddClip(Context& context, const Request& request) {
  const std::string content = Decoded(request.body), name = request.Parameter("name");
  std::string error;
  const auto snippet = solution::ReadSnippet(content, error);
  if (!snippet) throw HttpError(400, "the content " + error);
  if (snippet->xmlType.empty()) throw HttpError(400, "the content contains no object that FileMaker could paste");
  const auto label = name.empty() ? std::nullopt : std::optional<std::string_view>(name);
  const std::int64_t record = context.store.Add({"clip", snippet->xmlType, label, content});
  context.Log("clip added: " + snippet->title);
  return JsonAnswer({{"id", context.store.ClipOf(record)}}, 201);
}

Response TagClip(Context& context, const Request& request) {
  const auto tags = TagsIn(ReadMessage(request.body, {{"tags"}}).at("tags"));
  context.store.TagClip(NamedClip(context, request).id, tags);
  return JsonAnswer({{"ok", true}});
}

Response PlaceClip(Context& context, const Request& request) {
  const Clip clip = NamedClip(context, request);
  const CommandType& type = *FindCommandType("SET_CLIPBOARD");
  const CommandArguments arguments{{}, clip.xmlType, context.store.ClipContent(clip.id)};
  const std::string fault = CheckArguments(type, arguments, Reader::kProgram);
  if (!fault.empty()) throw HttpError(409, "the clip cannot be placed: " + fault);
  const std::string id = context.store.Enqueue(type, arguments);
  context.Log("command " + id + " queued: " + PublicName(type.name));
  return JsonAnswer({{"id", id}}, 201);
}

Response DeleteClip(Context& context, const Request& request) {
  context.store.DeleteClip(NamedClip(context, request).id);
  return JsonAnswer({{"ok", true}});
}

constexpr Route kClipRoutes[] = {
    {"GET", "/operator/clips", KeyPlace::kHeader, false, false, ListClips},
    {"POST", "/operator/clips", KeyPlace::kHeader, true, false, AddClip},
    {"GET", "/operator/clips/*/content", KeyPlace::kHeader, false, false, SendClip},
    {"POST", "/operator/clips/*/tags", KeyPlace::kHeader, false, false, TagClip},
    {"POST", "/operator/clips/*/place", KeyPlace::kHeader, false, false, PlaceClip},
    {"POST", "/operator/clips/*/delete", KeyPlace::kHeader, false, false, DeleteClip},
    {"GET", "/operator/clips/*", KeyPlace::kHeader, false, false, ShowClip},
};

}  // namespace

std::span<const Route> ClipRoutes() { return kClipRoutes; }

}  // namespace service
