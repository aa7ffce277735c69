#include "designs/IndexLayout.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>

namespace service {
namespace {

constexpr std::int64_t kVersion = 2;

constexpr char kTables[] = R"(
  CREATE TABLE designs (
    id INTEGER PRIMARY KEY,      -- the number of its record in the store
    content INTEGER NOT NULL,    -- in the store
    received INTEGER NOT NULL,   -- milliseconds since 1970
    file_uuid TEXT NOT NULL,
    file_name TEXT NOT NULL,
    folded_name TEXT NOT NULL,   -- without ".fmp12"
    version TEXT NOT NULL,
    bytes INTEGER NOT NULL,
    problem TEXT);
  CREATE INDEX designs_by_content ON designs (content);
  CREATE TABLE texts (           -- of elements; most are the same in many designs
    number INTEGER PRIMARY KEY,
    hash BLOB NOT NULL UNIQUE,
    body BLOB NOT NULL);
  CREATE TABLE elements (
    content INTEGER NOT NULL,
    text INTEGER NOT NULL REFERENCES texts (number),
    kind TEXT NOT NULL,
    uuid TEXT NOT NULL,
    name TEXT NOT NULL);
  CREATE INDEX elements_by_content ON elements (content);
  CREATE INDEX elements_by_text ON elements (text);
  CREATE VIRTUAL TABLE words USING fts5(body, content = '', tokenize = 'trigram');
  CREATE TABLE seen (            -- the records that were looked at, designs or not
    record INTEGER PRIMARY KEY,
    received INTEGER NOT NULL,
    content INTEGER NOT NULL,
    hash BLOB NOT NULL);         -- of the content
  PRAGMA user_version = 2)";

// Version 1 also held the labels, and remembered too little about the records to notice that they were replaced.
constexpr char kDropVersion1[] =
    "DROP TABLE designs; DROP TABLE elements; DROP TABLE texts; DROP TABLE words; DROP TABLE progress";

std::int64_t VersionOf(Database& index) {
  std::int64_t version = 0;
  Statement row(index, "PRAGMA user_version");
  if (row.Step()) row.Read(version);
  return version;
}

void CarryLabelsOver(Database& index, Database& received) {
  Transaction transaction(received);
  Statement rows(index, "SELECT id, received, label, note FROM designs WHERE label IS NOT NULL OR note IS NOT NULL");
  while (rows.Step()) {
    std::int64_t record = 0, time = 0;
    std::optional<std::string> label, note;
    rows.Read(record, time, label, note);
    Statement(received,
              "INSERT OR IGNORE INTO labels (record, label, note)"
              " SELECT number, ?3, ?4 FROM records WHERE number = ?1 AND received = ?2",
              record, time, label, note)
        .Step();
  }
  transaction.Commit();
}

}  // namespace

Database OpenIndex(const std::string& path, Database& received) {
  const int descriptor = open(path.c_str(), O_CREAT | O_RDWR | O_CLOEXEC, 0600);  // for its owner only
  if (descriptor >= 0) close(descriptor);
  Database index(path);
  if (VersionOf(index) == kVersion) return index;  // without waiting for a writer
  Transaction transaction(index);
  const std::int64_t version = VersionOf(index);
  if (version > kVersion) throw std::runtime_error(path + " was written by a newer version of this service");
  if (version == 1) {
    CarryLabelsOver(index, received);
    index.Execute(kDropVersion1);
  }
  if (version < kVersion) index.Execute(kTables);
  transaction.Commit();
  return index;
}

}  // namespace service
