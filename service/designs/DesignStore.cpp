#include "designs/DesignStore.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <stdexcept>

#include "design/Names.h"
#include "designs/StoredText.h"
#include "output/Search.h"
#include "store/Store.h"

namespace service {
namespace {

constexpr std::int64_t kVersion = 1;
constexpr std::size_t kShortestIndexed = 3;  // characters

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
    label TEXT,
    note TEXT,
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
  CREATE TABLE progress (record INTEGER NOT NULL);
  INSERT INTO progress VALUES (0);
  PRAGMA user_version = 1)";

std::size_t Characters(const std::string& text) {
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

// A phrase of the query language of the index.
std::string AsPhrase(const std::string& text) {
  std::string phrase = "\"";
  for (const char c : text) phrase.append(c == '"' ? 2 : 1, c);
  return phrase + '"';
}

std::string OpenedIn(const std::string& folder) {
  const std::string path = Store::PathIn(folder);
  if (!std::filesystem::exists(path)) throw std::runtime_error(folder + " has no designs: no service has used it yet");
  return path;
}

std::int64_t VersionOf(Database& index) {
  std::int64_t version = 0;
  Statement row(index, "PRAGMA user_version");
  if (row.Step()) row.Read(version);
  return version;
}

Database OpenIndex(const std::string& folder) {
  const std::string path = DesignStore::PathIn(folder);
  const int descriptor = open(path.c_str(), O_CREAT | O_RDWR | O_CLOEXEC, 0600);  // for its owner only
  if (descriptor >= 0) close(descriptor);
  Database database(path);
  if (VersionOf(database) == kVersion) return database;  // without waiting for a writer
  Transaction transaction(database);
  const std::int64_t version = VersionOf(database);
  if (version > kVersion) throw std::runtime_error(path + " was written by a newer version of this service");
  if (version == 0) database.Execute(kTables);
  transaction.Commit();
  return database;
}

constexpr char kSelect[] =
    "SELECT id, file_uuid, file_name, strftime('%Y-%m-%dT%H:%M:%fZ', received / 1000.0, 'unixepoch'), version, bytes,"
    " label, note, problem FROM designs";

StoredDesign ReadStored(const Statement& row) {
  StoredDesign d;
  row.Read(d.id, d.fileUuid, d.fileName, d.receivedAt, d.version, d.bytes, d.label, d.note, d.problem);
  return d;
}

}  // namespace

DesignStore::DesignStore(const std::string& folder) : received_(OpenedIn(folder)), index_(OpenIndex(folder)) {}

std::string DesignStore::PathIn(const std::string& folder) {
  return (std::filesystem::path(folder) / "varnix-designs.db").string();
}

std::vector<StoredDesign> DesignStore::List(const std::string& file) {
  const std::string sql = std::string(kSelect) + " WHERE ?1 = '' OR folded_name = ?2 OR file_uuid = ?1 ORDER BY id";
  const std::string foldedName = FoldedName(file);
  Statement rows(index_, sql.c_str(), file, foldedName);
  std::vector<StoredDesign> designs;
  while (rows.Step()) designs.push_back(ReadStored(rows));
  return designs;
}

std::optional<StoredDesign> DesignStore::Find(std::int64_t id) {
  const std::string sql = std::string(kSelect) + " WHERE id = ?1";
  Statement row(index_, sql.c_str(), id);
  if (!row.Step()) return std::nullopt;
  return ReadStored(row);
}

std::string DesignStore::Content(std::int64_t id) {
  Statement row(received_,
                "SELECT bytes FROM records JOIN contents ON contents.number = content WHERE records.number = ?1", id);
  std::string bytes;
  if (row.Step()) row.Read(bytes);
  return bytes;
}

bool DesignStore::Describe(std::int64_t id, const std::optional<std::string>& label,
                           const std::optional<std::string>& note) {
  Statement(index_,
            "UPDATE designs SET label = nullif(coalesce(?2, label), ''), note = nullif(coalesce(?3, note), '')"
            " WHERE id = ?1",
            id, label, note)
      .Step();
  return sqlite3_changes(index_.handle()) == 1;
}

std::string DesignStore::TextOf(std::int64_t number) {
  Statement row(index_, "SELECT body FROM texts WHERE number = ?1", number);
  std::string body;
  if (row.Step()) row.Read(body);
  return body;
}

bool DesignStore::Search(const std::string& text, const std::string& file,
                         const std::function<void(const StoredHit&)>& found,
                         const std::function<bool()>& isWanted) try {
  const std::string folded = solution::FoldCase(text);
  if (folded.empty() || folded.find('\0') != std::string::npos) return true;  // XML contains no zero bytes
  // Texts that are too short for the index are searched for in all texts.
  const bool isIndexed = Characters(folded) >= kShortestIndexed;
  const std::string sql =
      std::string(
          "SELECT min(id), max(id), file_name, kind, uuid, name, text FROM elements JOIN designs USING (content)"
          " WHERE (?1 = '' OR folded_name = ?2 OR file_uuid = ?1)") +
      (isIndexed ? " AND text IN (SELECT rowid FROM words WHERE words MATCH ?3)" : "") +
      " GROUP BY text, file_uuid, file_name, kind, uuid, name ORDER BY file_name, max(id), elements.rowid";
  const std::string foldedName = FoldedName(file);
  const auto phrase = isIndexed ? std::optional(AsPhrase(folded)) : std::nullopt;
  const Interruption interruption(index_, isWanted);
  Statement rows(index_, sql.c_str(), file, foldedName, phrase);
  while (rows.Step()) {
    if (!isWanted()) return false;
    StoredHit hit;
    std::int64_t number = 0;
    rows.Read(hit.firstDesign, hit.lastDesign, hit.fileName, hit.kind, hit.uuid, hit.name, number);
    const std::string body = TextOf(number);  // read here, so that sorting the rows does not move long texts
    ForEachValue(body, [&](std::string_view property, std::string_view value) {
      hit.property = property;
      solution::SearchLines(value, folded, [&](std::size_t line, std::string_view lineText) {
        hit.line = line;
        hit.text = lineText;
        found(hit);
      });
    });
  }
  return true;
} catch (const std::runtime_error&) {
  if (isWanted()) throw;
  return false;
}

}  // namespace service
