#include "store/Store.h"

#include <sys/stat.h>

#include <algorithm>
#include <filesystem>

#include "store/Contents.h"
#include "store/Elapsed.h"
#include "store/Layout.h"
#include "system/PrivateFile.h"

namespace service {
namespace {

constexpr char kFileName[] = "varnix-service.db";

#define TIME_TEXT(column) "strftime('%Y-%m-%dT%H:%M:%fZ', " column " / 1000.0, 'unixepoch')"

constexpr char kSelectCommands[] =
    "SELECT id, type, file_name, xml_type, coalesce((SELECT name FROM agents WHERE command = commands.id), ''), state,"
    " max(0, ?1 - coalesce(finished, delivered, queued)) / 1000, error,"
    " " TIME_TEXT("queued") ", " TIME_TEXT("expires") ", " TIME_TEXT("delivered") ", " TIME_TEXT("finished") ","
    " (SELECT max(number) FROM records WHERE command = commands.id AND kind <> 'diagnostic')"
    " FROM commands";

CommandSummary ReadCommand(const Statement& row) {
  CommandSummary c;
  row.Read(c.id, c.type, c.fileName, c.xmlType, c.agent, c.state, c.secondsInState, c.error, c.queuedAt, c.expiresAt,
           c.deliveredAt, c.finishedAt, c.result);
  return c;
}

constexpr char kSelectRecords[] = "SELECT number, kind, name, label, " TIME_TEXT("received") ", command,"
                                  " (SELECT length(bytes) FROM contents WHERE number = content) FROM records";

RecordSummary ReadRecord(const Statement& row) {
  RecordSummary r;
  row.Read(r.number, r.kind, r.name, r.label, r.receivedAt, r.command, r.bytes);
  return r;
}

#undef TIME_TEXT

template <class Open>
auto OpenIn(const std::string& folder, const Open& open) try {
  return open();
} catch (const DatabaseInUse&) {
  throw std::runtime_error(folder + " is in use by another service");
} catch (const std::runtime_error& error) {
  throw std::runtime_error(folder + " cannot be used: " + error.what());
}

FolderLock LockFolder(const std::string& folder) {
  if (std::filesystem::create_directories(folder)) {
    std::filesystem::permissions(folder, std::filesystem::perms::owner_all);
  }
  CheckPrivate(folder);
  CheckPrivate(Store::PathIn(folder));
  return FolderLock(folder);
}

Database OpenDatabase(const std::string& path) {
  Database database(path);
  PrepareLayout(database);
  return database;
}

std::uint64_t InodeOf(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 ? static_cast<std::uint64_t>(status.st_ino) : 0;
}

// Whether the results of the two could be confused. Only equal names count, because a clipboard push has no label and
// the other pushes have one.
bool ResultsOverlap(const CommandType& a, const CommandType& b) {
  const auto text = [](const char* name) { return std::string_view(name == nullptr ? "" : name); };
  return a.resultKind != nullptr && text(a.resultKind) == text(b.resultKind) &&
         text(a.resultName) == text(b.resultName);
}

std::int64_t Milliseconds(std::chrono::seconds duration) {
  return std::chrono::duration_cast<std::chrono::milliseconds>(duration).count();
}

// Delivered and not answered, whether or not somebody still waits for the answer.
#define MAY_BE_ANSWERED "(state = 'delivered' OR (state = 'cancelled' AND records_before IS NOT NULL))"

// The types whose result a plug-in may be sending at `now`.
std::vector<const CommandType*> TypesAtWork(Database& database, std::int64_t now) {
  std::vector<const CommandType*> types;
  Statement rows(database, "SELECT type, delivered FROM commands WHERE " MAY_BE_ANSWERED);
  while (rows.Step()) {
    std::string name;
    std::int64_t delivered = 0;
    rows.Read(name, delivered);
    const CommandType* type = FindCommandType(name);
    if (type != nullptr && IsWithin(delivered, Milliseconds(type->takes), now)) types.push_back(type);
  }
  return types;
}

// 0 when none can be delivered now.
std::int64_t NextToDeliver(Database& database, std::int64_t now) {
  const auto atWork = TypesAtWork(database, now);
  Statement rows(database, "SELECT number, type FROM commands WHERE state = 'queued' ORDER BY number");
  while (rows.Step()) {
    std::int64_t number = 0;
    std::string name;
    rows.Read(number, name);
    const CommandType* type = FindCommandType(name);
    const auto overlaps = [type](const CommandType* other) { return ResultsOverlap(*type, *other); };
    if (type == nullptr || std::none_of(atWork.begin(), atWork.end(), overlaps)) return number;
  }
  return 0;
}

// The plug-in's pushes and uploads name no command, but each is sent just before its command's completion. So the
// result is the newest one that fits and belongs to no other command. A clipboard push has no label, unlike those that
// a FileMaker script sends by itself. An upload with the name of another file answers another request.
void ClaimResult(Database& database, const Command& command, std::int64_t recordsBefore) {
  const CommandType* type = FindCommandType(command.type);
  if (type == nullptr || type->resultKind == nullptr) return;
  const auto resultName = type->resultName == nullptr ? std::nullopt : std::optional<std::string>(type->resultName);
  std::optional<std::string> uploadName;
  if (const auto& file = command.arguments.fileName; file && !file->empty()) uploadName = *file + ".fmp12.xml";
  Statement(database,
            "UPDATE records SET command = ?1 WHERE number = (SELECT number FROM records"
            " WHERE command IS NULL AND number > ?2 AND kind = ?3 AND name = coalesce(?4, name)"
            " AND (label IS NULL) = (?4 IS NULL) AND (kind <> 'ingest' OR ?5 IS NULL OR name = ?5)"
            " ORDER BY number DESC LIMIT 1)",
            command.id, recordsBefore, type->resultKind, resultName, uploadName)
      .Step();
}

}  // namespace

std::int64_t Store::SystemTime() {
  using namespace std::chrono;
  return duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
}

Store::Store(const std::string& folder, Clock clock)
    : clock_(std::move(clock)),
      path_(PathIn(folder)),
      lock_(OpenIn(folder, [&] { return LockFolder(folder); })),
      database_(OpenIn(folder, [&] { return OpenDatabase(path_); })),
      inode_(InodeOf(path_)) {
  OthersHaveWritten();
}

std::string Store::PathIn(const std::string& folder) { return (std::filesystem::path(folder) / kFileName).string(); }

std::string Store::Folder() const { return std::filesystem::path(path_).parent_path().string(); }

void Store::CheckFile() const {
  if (InodeOf(path_) != inode_) throw StoreGone(path_ + " was removed or replaced: start the service again");
}

bool Store::OthersHaveWritten() {
  const std::lock_guard lock(mutex_);
  Statement row(database_, "PRAGMA data_version");
  const std::int64_t before = othersWrites_;
  if (row.Step()) row.Read(othersWrites_);
  return othersWrites_ != before;
}

void Store::ExpireCommands() {
  Statement(database_,
            "UPDATE commands SET state = 'expired', finished = expires WHERE state = 'queued' AND expires <= ?1",
            clock_())
      .Step();
  if (sqlite3_changes(database_.handle()) > 0) changed_(Topic::kCommands);
}

void Store::Expire() {
  const std::lock_guard lock(mutex_);
  CheckFile();
  ExpireCommands();
}

std::string Store::Enqueue(const CommandType& type, const CommandArguments& arguments,
                           std::optional<std::chrono::seconds> queuedFor, const std::string& agent) {
  const std::lock_guard lock(mutex_);
  CheckFile();
  const std::int64_t now = clock_();
  Transaction transaction(database_);
  Statement insert(database_,
                   "INSERT INTO commands (id, type, queued, expires, file_name, xml_type, xml_content)"
                   " VALUES (lower(hex(randomblob(8))), ?1, ?2, ?3, ?4, ?5, ?6) RETURNING id",
                   type.name, now, now + Milliseconds(queuedFor.value_or(type.queuedFor)), arguments.fileName,
                   arguments.xmlType, arguments.xmlContent);
  insert.Step();
  std::string id;
  insert.Read(id);
  insert.Step();  // ends the statement
  if (!agent.empty()) Statement(database_, "INSERT INTO agents (command, name) VALUES (?1, ?2)", id, agent).Step();
  transaction.Commit();
  changed_(Topic::kCommands);
  return id;
}

std::optional<Command> Store::QueuedForm(const std::string& id) {
  const std::lock_guard lock(mutex_);
  Statement row(database_, "SELECT id, type, file_name, xml_type, xml_content FROM commands WHERE id = ?1", id);
  if (!row.Step()) return std::nullopt;
  Command command;
  row.Read(command.id, command.type, command.arguments.fileName, command.arguments.xmlType,
           command.arguments.xmlContent);
  return command;
}

std::optional<Command> Store::Deliver() {
  const std::lock_guard lock(mutex_);
  CheckFile();
  ExpireCommands();
  const std::int64_t now = clock_();
  const std::int64_t number = NextToDeliver(database_, now);
  if (number == 0) return std::nullopt;
  Statement update(database_,
                   "UPDATE commands SET state = 'delivered', delivered = ?1,"
                   " records_before = (SELECT coalesce(max(number), 0) FROM records)"
                   " WHERE number = ?2 RETURNING id, type, file_name, xml_type, xml_content",
                   now, number);
  update.Step();
  Command command;
  update.Read(command.id, command.type, command.arguments.fileName, command.arguments.xmlType,
              command.arguments.xmlContent);
  update.Step();  // ends the statement, which commits it
  changed_(Topic::kCommands);
  return command;
}

Cancellation Store::Cancel(const std::string& id) { return Withdraw(id, false); }

Cancellation Store::Forget(const std::string& id) { return Withdraw(id, true); }

Cancellation Store::Withdraw(const std::string& id, bool alsoDelivered) {
  const std::lock_guard lock(mutex_);
  CheckFile();
  ExpireCommands();
  Statement find(database_, "SELECT state FROM commands WHERE id = ?1", id);
  if (!find.Step()) return Cancellation::kUnknown;
  std::string state;
  find.Read(state);
  if (state != "queued" && !(alsoDelivered && state == "delivered")) return Cancellation::kOtherState;
  Statement(database_, "UPDATE commands SET state = 'cancelled', finished = ?1 WHERE id = ?2", clock_(), id).Step();
  changed_(Topic::kCommands);
  return Cancellation::kCancelled;
}

Completion Store::Complete(const std::string& id, const std::string& state, const std::optional<std::string>& error) {
  const std::lock_guard lock(mutex_);
  CheckFile();
  Transaction transaction(database_);
  Command command{id, "", {}};
  std::optional<std::int64_t> delivered, recordsBefore;
  bool isForgotten = false;
  {
    Statement find(database_,
                   "SELECT type, file_name, state, error, delivered, records_before FROM commands WHERE id = ?1", id);
    if (!find.Step()) return Completion::kUnknown;
    std::string present;
    std::optional<std::string> presentError;
    find.Read(command.type, command.arguments.fileName, present, presentError, delivered, recordsBefore);
    if (present == state && presentError == error) return Completion::kAccepted;
    if (present == "completed" || present == "failed") return Completion::kFinishedOtherwise;
    isForgotten = present == "cancelled" && delivered;
    if (isForgotten && !recordsBefore) return Completion::kAccepted;
    if (present != "delivered" && !isForgotten) return Completion::kNotDelivered;
  }
  if (isForgotten) {
    Statement(database_, "UPDATE commands SET records_before = NULL, error = ?1 WHERE id = ?2", error, id).Step();
  } else {
    Statement(database_, "UPDATE commands SET state = ?1, error = ?2, finished = ?3 WHERE id = ?4", state, error,
              clock_(), id)
        .Step();
  }
  if (state == "completed") ClaimResult(database_, command, recordsBefore.value_or(0));
  transaction.Commit();
  changed_(Topic::kCommands);
  changed_(Topic::kRecords);
  return Completion::kAccepted;
}

std::int64_t Store::Add(const Record& record) {
  // Before the lock: reading the content takes time, and polls must not wait for it.
  const bool mayBeClip = record.kind == "push" || record.kind == "clip";
  const auto clip = mayBeClip ? DescribeClip(record.name, record.label, record.content) : std::nullopt;
  const std::lock_guard lock(mutex_);
  CheckFile();
  Transaction transaction(database_);
  const std::int64_t content = KeepOnce(database_, "contents", "bytes", record.content).number;
  Statement(database_,
            "INSERT INTO records (kind, name, label, received, content, command) VALUES (?1, ?2, ?3, ?4, ?5,"
            " (SELECT id FROM commands WHERE ?1 = 'diagnostic' AND type = 'GET_SCHEMA' AND " MAY_BE_ANSWERED
            "  ORDER BY delivered DESC, number DESC LIMIT 1))",
            record.kind, record.name, record.label, clock_(), content)
      .Step();
  const std::int64_t number = sqlite3_last_insert_rowid(database_.handle());
  if (clip) KeepClip(database_, content, *clip);
  transaction.Commit();
  changed_(Topic::kRecords);
  if (clip) changed_(Topic::kClips);
  if (record.kind == "diagnostic") changed_(Topic::kCommands);
  return number;
}

std::vector<CommandSummary> Store::Commands(const std::string& state, std::int64_t limit) {
  const std::lock_guard lock(mutex_);
  ExpireCommands();
  const std::string sql = std::string(kSelectCommands) + " WHERE ?2 = '' OR state = ?2 ORDER BY number DESC LIMIT ?3";
  Statement rows(database_, sql.c_str(), clock_(), state, limit);
  std::vector<CommandSummary> commands;
  while (rows.Step()) commands.push_back(ReadCommand(rows));
  std::reverse(commands.begin(), commands.end());
  return commands;
}

std::optional<CommandSummary> Store::FindCommand(const std::string& id) {
  const std::lock_guard lock(mutex_);
  ExpireCommands();
  const std::string sql = std::string(kSelectCommands) + " WHERE id = ?2";
  Statement row(database_, sql.c_str(), clock_(), id);
  if (!row.Step()) return std::nullopt;
  return ReadCommand(row);
}

std::vector<RecordSummary> Store::Records(const std::optional<std::string>& kind,
                                          const std::optional<std::string>& command, std::int64_t limit) {
  const std::lock_guard lock(mutex_);
  const std::string sql = std::string(kSelectRecords) +
                          " WHERE (?1 IS NULL OR kind = ?1) AND (?2 IS NULL OR command = ?2)"
                          " ORDER BY number DESC LIMIT ?3";
  Statement rows(database_, sql.c_str(), kind, command, limit);
  std::vector<RecordSummary> records;
  while (rows.Step()) records.push_back(ReadRecord(rows));
  std::reverse(records.begin(), records.end());
  return records;
}

std::optional<RecordSummary> Store::FindRecord(std::int64_t number) {
  const std::lock_guard lock(mutex_);
  const std::string sql = std::string(kSelectRecords) + " WHERE number = ?1";
  Statement row(database_, sql.c_str(), number);
  if (!row.Step()) return std::nullopt;
  return ReadRecord(row);
}

std::string Store::Content(std::int64_t number) {
  const std::lock_guard lock(mutex_);
  Statement row(database_,
                "SELECT bytes FROM records JOIN contents ON contents.number = content WHERE records.number = ?1",
                number);
  std::string bytes;
  if (row.Step()) row.Read(bytes);
  return bytes;
}

Totals Store::Count() {
  const std::lock_guard lock(mutex_);
  CheckFile();
  ExpireCommands();
  Statement row(database_,
                "SELECT (SELECT count(*) FROM commands WHERE state = 'queued'),"
                " (SELECT count(*) FROM commands WHERE state = 'delivered'),"
                " (SELECT count(*) FROM commands), (SELECT count(*) FROM records),"
                " (SELECT coalesce(sum(length(bytes)), 0) FROM contents)");
  row.Step();
  Totals totals;
  row.Read(totals.queued, totals.delivered, totals.commands, totals.records, totals.bytes);
  return totals;
}

}  // namespace service
