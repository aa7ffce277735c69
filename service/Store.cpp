#include "Store.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <stdexcept>

namespace service {
namespace {

constexpr char kFileName[] = "varnix-service.db";
constexpr std::int64_t kLayoutVersion = 1;

// The large columns stand last, so that reading the others does not touch them.
constexpr char kLayout[] = R"(
  CREATE TABLE commands (
    number INTEGER PRIMARY KEY AUTOINCREMENT,
    id TEXT NOT NULL UNIQUE,
    type TEXT NOT NULL,
    state TEXT NOT NULL DEFAULT 'queued' CHECK (state IN ('queued', 'delivered', 'completed', 'failed')),
    queued INTEGER NOT NULL,    -- times are milliseconds since 1970
    delivered INTEGER,
    finished INTEGER,
    records_before INTEGER,     -- newest record at delivery; a result is younger
    file_name TEXT,
    xml_type TEXT,
    error TEXT,
    xml_content TEXT);
  CREATE INDEX commands_by_state ON commands (state, number);
  CREATE TABLE records (
    number INTEGER PRIMARY KEY AUTOINCREMENT,
    kind TEXT NOT NULL,
    name TEXT NOT NULL,
    label TEXT,
    received INTEGER NOT NULL,
    command TEXT REFERENCES commands (id),
    content BLOB NOT NULL);
  CREATE INDEX records_by_command ON records (command);
  PRAGMA user_version = 1)";

#define TIME_TEXT(column) "strftime('%Y-%m-%dT%H:%M:%fZ', " column " / 1000.0, 'unixepoch')"

constexpr char kSelectCommands[] =
    "SELECT id, type, file_name, xml_type, state,"
    " max(0, ?1 - coalesce(finished, delivered, queued)) / 1000, error,"
    " " TIME_TEXT("queued") ", " TIME_TEXT("delivered") ", " TIME_TEXT("finished") ","
    " (SELECT max(number) FROM records WHERE command = commands.id AND kind <> 'diagnostic')"
    " FROM commands";
constexpr char kSelectRecords[] = "SELECT number, kind, name, label, " TIME_TEXT("received") ", command,"
                                  " length(content) FROM records";

#undef TIME_TEXT

std::int64_t Now() {
  using namespace std::chrono;
  return duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
}

Database OpenIn(const std::string& folder) try {
  std::filesystem::create_directories(folder);
  return Database((std::filesystem::path(folder) / kFileName).string());
} catch (const DatabaseInUse&) {
  throw std::runtime_error(folder + " is in use by another service");
} catch (const std::runtime_error& error) {
  throw std::runtime_error(folder + " cannot be used: " + error.what());
}

CommandSummary ReadCommand(const Statement& row) {
  CommandSummary command{row.Text(0),         row.Text(1),         row.OptionalText(2), row.OptionalText(3),
                         row.Text(4),         row.Integer(5),      row.OptionalText(6), row.Text(7),
                         row.OptionalText(8), row.OptionalText(9), std::nullopt};
  if (row.Integer(10) != 0) command.result = row.Integer(10);
  return command;
}

RecordSummary ReadRecord(const Statement& row) {
  return {row.Integer(0), row.Text(1),         row.Text(2),   row.OptionalText(3),
          row.Text(4),    row.OptionalText(5), row.Integer(6)};
}

// The plug-in's pushes and uploads name no command, but each goes out just before its command's completion: the newest
// that suits and belongs to no other command is the one. A clipboard push bears no label, unlike those that a FileMaker
// script sends by itself; an upload is named after the file that was asked for.
void ClaimResult(Database& database, const Command& command, std::int64_t recordsBefore) {
  const CommandType* type = FindCommandType(command.type);
  if (type == nullptr || type->resultKind == nullptr) return;
  const auto resultName = type->resultName == nullptr ? std::nullopt : std::optional<std::string>(type->resultName);
  const std::string uploadName = command.arguments.fileName.value_or("") + ".fmp12.xml";
  Statement(database,
            "UPDATE records SET command = ?1 WHERE number = (SELECT number FROM records"
            " WHERE command IS NULL AND number > ?2 AND kind = ?3 AND name = coalesce(?4, name)"
            " AND (label IS NULL) = (?4 IS NULL) ORDER BY name = ?5 DESC, number DESC LIMIT 1)",
            command.id, recordsBefore, type->resultKind, resultName, uploadName)
      .Step();
}

}  // namespace

Store::Store(const std::string& folder) : database_(OpenIn(folder)) {
  Statement version(database_, "PRAGMA user_version");
  version.Step();
  if (version.Integer(0) == kLayoutVersion) return;
  if (version.Integer(0) != 0) throw std::runtime_error(folder + " was written by another version of this service");
  Transaction transaction(database_);
  database_.Execute(kLayout);
  transaction.Commit();
}

std::string Store::Enqueue(const std::string& type, const CommandArguments& arguments) {
  const std::lock_guard lock(mutex_);
  Statement insert(database_,
                   "INSERT INTO commands (id, type, queued, file_name, xml_type, xml_content)"
                   " VALUES (lower(hex(randomblob(8))), ?1, ?2, ?3, ?4, ?5) RETURNING id",
                   type, Now(), arguments.fileName, arguments.xmlType, arguments.xmlContent);
  insert.Step();
  std::string id = insert.Text(0);
  insert.Step();  // ends the statement, which commits it
  return id;
}

std::optional<Command> Store::Deliver() {
  const std::lock_guard lock(mutex_);
  Statement update(database_,
                   "UPDATE commands SET state = 'delivered', delivered = ?1,"
                   " records_before = (SELECT coalesce(max(number), 0) FROM records)"
                   " WHERE number = (SELECT min(number) FROM commands WHERE state = 'queued')"
                   " RETURNING id, type, file_name, xml_type, xml_content",
                   Now());
  if (!update.Step()) return std::nullopt;
  Command command{
      update.Text(0), update.Text(1), {update.OptionalText(2), update.OptionalText(3), update.OptionalText(4)}};
  update.Step();  // ends the statement, which commits it
  return command;
}

Completion Store::Complete(const std::string& id, const std::string& state, const std::optional<std::string>& error) {
  const std::lock_guard lock(mutex_);
  Transaction transaction(database_);
  Command command{id, "", {}};
  std::int64_t recordsBefore = 0;
  {
    Statement find(database_, "SELECT type, file_name, state, error, records_before FROM commands WHERE id = ?1", id);
    if (!find.Step()) return Completion::kUnknown;
    const std::string present = find.Text(2);
    if (present == "queued") return Completion::kNotDelivered;
    if (present != "delivered") {
      return present == state && find.OptionalText(3) == error ? Completion::kAccepted : Completion::kFinishedOtherwise;
    }
    command.type = find.Text(0);
    command.arguments.fileName = find.OptionalText(1);
    recordsBefore = find.Integer(4);
  }
  Statement(database_, "UPDATE commands SET state = ?1, error = ?2, finished = ?3 WHERE id = ?4", state, error, Now(),
            id)
      .Step();
  ClaimResult(database_, command, recordsBefore);
  transaction.Commit();
  return Completion::kAccepted;
}

std::int64_t Store::Add(const Record& record) {
  const std::lock_guard lock(mutex_);
  Statement insert(database_,
                   "INSERT INTO records (kind, name, label, received, content, command) VALUES (?1, ?2, ?3, ?4, ?5,"
                   " (SELECT id FROM commands WHERE ?1 = 'diagnostic' AND type = 'GET_SCHEMA' AND state = 'delivered'"
                   "  ORDER BY delivered DESC, number DESC LIMIT 1))",
                   record.kind, record.name, record.label, Now(), Blob{record.content});
  insert.Step();
  return sqlite3_last_insert_rowid(database_.handle());
}

std::vector<CommandSummary> Store::Commands(const std::string& state, std::int64_t limit) {
  const std::lock_guard lock(mutex_);
  const std::string sql = std::string(kSelectCommands) + " WHERE ?2 = '' OR state = ?2 ORDER BY number DESC LIMIT ?3";
  Statement rows(database_, sql.c_str(), Now(), state, limit);
  std::vector<CommandSummary> commands;
  while (rows.Step()) commands.push_back(ReadCommand(rows));
  std::reverse(commands.begin(), commands.end());
  return commands;
}

std::optional<CommandSummary> Store::FindCommand(const std::string& id) {
  const std::lock_guard lock(mutex_);
  const std::string sql = std::string(kSelectCommands) + " WHERE id = ?2";
  Statement row(database_, sql.c_str(), Now(), id);
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
  Statement row(database_, "SELECT content FROM records WHERE number = ?1", number);
  row.Step();
  return row.Text(0);
}

}  // namespace service
