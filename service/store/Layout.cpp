#include "store/Layout.h"

#include "clips/Clip.h"
#include "store/Contents.h"

namespace service {
namespace {

constexpr std::int64_t kVersion = 4;

constexpr char kTables[] = R"(
  CREATE TABLE commands (
    number INTEGER PRIMARY KEY AUTOINCREMENT,
    id TEXT NOT NULL UNIQUE,
    type TEXT NOT NULL,
    state TEXT NOT NULL DEFAULT 'queued'
      CHECK (state IN ('queued', 'delivered', 'completed', 'failed', 'cancelled', 'expired')),
    queued INTEGER NOT NULL,    -- times are milliseconds since 1970
    expires INTEGER,
    delivered INTEGER,
    finished INTEGER,
    records_before INTEGER,     -- newest record at delivery; a result is younger
    file_name TEXT,
    xml_type TEXT,
    error TEXT,
    xml_content TEXT);          -- large columns are last: reading the others does not touch them
  CREATE INDEX commands_by_state ON commands (state, number);
  CREATE TABLE contents (
    number INTEGER PRIMARY KEY AUTOINCREMENT,
    hash BLOB NOT NULL UNIQUE,
    bytes BLOB NOT NULL);
  CREATE TABLE records (
    number INTEGER PRIMARY KEY AUTOINCREMENT,
    kind TEXT NOT NULL,
    name TEXT NOT NULL,
    label TEXT,
    received INTEGER NOT NULL,
    command TEXT REFERENCES commands (id),
    content INTEGER NOT NULL REFERENCES contents (number));
  CREATE INDEX records_by_command ON records (command);
  CREATE INDEX records_by_content ON records (content);
  CREATE INDEX records_by_name ON records (kind, name, number))";

constexpr char kLaterTables[] = R"(
  CREATE TABLE agents (         -- AI assistants that queued commands
    command TEXT PRIMARY KEY REFERENCES commands (id) ON DELETE CASCADE,
    name TEXT NOT NULL);
  CREATE TABLE sessions (       -- of browsers that show the console
    hash BLOB PRIMARY KEY,      -- of the secret in the browser's cookie
    ends INTEGER NOT NULL);
  CREATE TABLE settings (
    name TEXT PRIMARY KEY,
    value INTEGER NOT NULL))";

constexpr char kLabels[] = R"(
  CREATE TABLE labels (         -- of designs
    record INTEGER PRIMARY KEY REFERENCES records (number) ON DELETE CASCADE,
    label TEXT,
    note TEXT))";

// In version 1 each record had its own content, and commands could not be cancelled and did not expire.
constexpr char kSetVersion1Aside[] = R"(
  DROP INDEX commands_by_state;
  DROP INDEX records_by_command;
  ALTER TABLE commands RENAME TO old_commands;
  ALTER TABLE records RENAME TO old_records)";

constexpr char kCopyCommands[] = R"(
  INSERT INTO commands (number, id, type, state, queued, delivered, finished, records_before, file_name, xml_type,
      error, xml_content)
    SELECT number, id, type, state, queued, delivered, finished, records_before, file_name, xml_type, error,
      xml_content FROM old_commands)";

std::int64_t Version(Database& database) {
  Statement row(database, "PRAGMA user_version");
  std::int64_t version = 0;
  if (row.Step()) row.Read(version);
  return version;
}

void CopyRecords(Database& database) {
  Statement rows(database, "SELECT number, content FROM old_records ORDER BY number");
  while (rows.Step()) {
    std::int64_t number = 0;
    std::string bytes;
    rows.Read(number, bytes);
    Statement(database,
              "INSERT INTO records (number, kind, name, label, received, command, content)"
              " SELECT number, kind, name, label, received, command, ?2 FROM old_records WHERE number = ?1",
              number, KeepOnce(database, "contents", "bytes", bytes).number)
        .Step();
  }
}

}  // namespace

bool HasPresentLayout(Database& database) { return Version(database) == kVersion; }

void PrepareLayout(Database& database) {
  const std::int64_t version = Version(database);
  if (version == kVersion) return;
  if (version > kVersion) throw std::runtime_error("it was written by a newer version of this service");
  if (version == 0) database.Execute(kMakeShrinkable);
  Transaction transaction(database);
  if (version == 1) database.Execute(kSetVersion1Aside);
  if (version < 2) database.Execute(kTables);
  if (version < 3) database.Execute(kLaterTables);
  if (version == 1) {
    database.Execute(kCopyCommands);
    CopyRecords(database);
    database.Execute("DROP TABLE old_records; DROP TABLE old_commands");
  }
  if (version < 3) CreateClips(database);
  database.Execute(kLabels);
  database.Execute("PRAGMA user_version = 4");
  transaction.Commit();
}

}  // namespace service
