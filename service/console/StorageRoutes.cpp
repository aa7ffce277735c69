// What is stored and for how long, single deletions, and backups.
#include <chrono>
#include <filesystem>

#include "console/Backup.h"
#include "designs/DesignStore.h"
#include "http/HttpError.h"
#include "http/Message.h"
#include "http/Parameters.h"
#include "http/Routes.h"

namespace service {
namespace {

constexpr std::int64_t kMostDays = 36500;
constexpr std::chrono::minutes kLongestIndexing{1};
constexpr char kDatabase[] = "varnix-service.db";  // these and the files that SQLite keeps next to them
constexpr char kIndex[] = "varnix-designs.db";

std::uintmax_t BytesOf(const std::string& folder, std::string_view name) {
  std::uintmax_t bytes = 0;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    std::error_code gone;
    const auto size = entry.path().filename().string().starts_with(name) ? entry.file_size(gone) : 0;
    if (!gone) bytes += size;
  }
  return bytes;
}

Json OrNull(const std::optional<std::int64_t>& number) { return number ? Json(*number) : Json(nullptr); }

Response ShowStorage(Context& context, const Request&) {
  const std::string folder = context.store.Folder();
  Json kinds = Json::array();
  for (const auto& kind : context.store.Sizes()) {
    kinds.push_back({{"kind", kind.kind}, {"count", kind.count}, {"bytes", kind.bytes}});
  }
  const Retention retention = context.store.GetRetention();
  return JsonAnswer({{"folder", folder},
                     {"databaseBytes", BytesOf(folder, kDatabase)},
                     {"indexBytes", BytesOf(folder, kIndex)},
                     {"kinds", std::move(kinds)},
                     {"retention", {{"days", OrNull(retention.days)}, {"keep", OrNull(retention.keep)}}}});
}

std::optional<std::int64_t> Setting(const Message& message, const char* name, std::int64_t highest) {
  if (message.at(name).empty()) return std::nullopt;
  return Number(name, message.at(name), 1, highest, 0);
}

Response SetRetention(Context& context, const Request& request) {
  const Message message = ReadMessage(request.body, {{"days"}, {"keep"}});
  context.store.SetRetention({Setting(message, "days", kMostDays), Setting(message, "keep", INT64_MAX)});
  return JsonAnswer({{"ok", true}});
}

std::int64_t NumberIn(const Request& request, const char* unknown) {
  const auto number = WholeNumber(request.captures[0]);
  if (!number) throw HttpError(404, unknown);
  return *number;
}

Response DeleteRecord(Context& context, const Request& request) {
  constexpr char kUnknown[] = "no such record";
  if (!context.store.DeleteRecord(NumberIn(request, kUnknown))) throw HttpError(404, kUnknown);
  context.storeChanged();
  return JsonAnswer({{"ok", true}});
}

// An export that was received again without a change in between is not listed as a design, but must go, too.
Response DeleteDesign(Context& context, const Request& request) {
  constexpr char kUnknown[] = "no such design";
  const std::int64_t id = NumberIn(request, kUnknown);
  const auto repetitions = context.store.Repetitions(id);
  context.storeChanged();
  if (!context.awaitIndex(kLongestIndexing)) throw HttpError(503, "designs are being indexed: try again later");
  DesignStore history(context.store.Folder());
  if (!history.Find(id)) throw HttpError(404, kUnknown);
  for (const std::int64_t record : repetitions) {
    if (record != id && history.Find(record)) break;
    context.store.DeleteRecord(record);
  }
  context.storeChanged();
  return JsonAnswer({{"ok", true}});
}

Response DeleteCommand(Context& context, const Request& request) {
  switch (context.store.DeleteCommand(request.captures[0])) {
    case Deletion::kUnknown:
      throw HttpError(404, "no such command");
    case Deletion::kNotFinished:
      throw HttpError(409, "the command is not finished");
    case Deletion::kAnswerMayCome:
      throw HttpError(409, "FileMaker may still answer this command: delete it in a minute");
    case Deletion::kDeleted:
      break;
  }
  return JsonAnswer({{"ok", true}});
}

Response SendBackup(Context& context, const Request&) {
  Response response{200, "", "application/octet-stream"};
  response.headers = {{"Content-Disposition", "attachment; filename=\"varnix-service.db\""},
                      {"Cache-Control", "no-store"}};
  context.store.CheckFile();
  response.file = MakeBackup(context.store.Folder());
  return response;
}

constexpr Route kStorageRoutes[] = {
    {"GET", "/operator/storage", KeyPlace::kHeader, false, false, ShowStorage},
    {"POST", "/operator/retention", KeyPlace::kHeader, false, false, SetRetention},
    {"POST", "/operator/records/*/delete", KeyPlace::kHeader, false, false, DeleteRecord},
    {"POST", "/operator/designs/*/delete", KeyPlace::kHeader, false, false, DeleteDesign},
    {"POST", "/operator/commands/*/delete", KeyPlace::kHeader, false, false, DeleteCommand},
    {"GET", "/operator/backup", KeyPlace::kHeader, false, false, SendBackup},
};

}  // namespace

std::span<const Route> StorageRoutes() { return kStorageRoutes; }

}  // namespace service
