#include "designs/DesignStore.h"

#include <algorithm>
#include <filesystem>
#include <stdexcept>

#include "design/Names.h"
#include "designs/IndexLayout.h"
#include "designs/StoredText.h"
#include "output/Search.h"
#include "store/FolderLock.h"
#include "store/Layout.h"
#include "store/Store.h"

namespace service {
namespace {

constexpr std::size_t kShortestIndexed = 3;  // characters

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

Database OpenReceived(const std::string& folder) {
  const std::string path = Store::PathIn(folder);
  if (!std::filesystem::exists(path)) throw std::runtime_error(folder + " has no designs: no service has used it yet");
  Database database(path);
  if (HasPresentLayout(database)) return database;
  try {  // after an update, before the service was started again
    const FolderLock lock(folder);
    PrepareLayout(database);
  } catch (const DatabaseInUse&) {
    throw std::runtime_error(folder + " is in use by another version of the service: restart the service");
  }
  return database;
}

constexpr char kSelect[] =
    "SELECT id, file_uuid, file_name, strftime('%Y-%m-%dT%H:%M:%fZ', received / 1000.0, 'unixepoch'), version, bytes,"
    " problem FROM designs";

StoredDesign ReadStored(const Statement& row, Database& received) {
  StoredDesign d;
  row.Read(d.id, d.fileUuid, d.fileName, d.receivedAt, d.version, d.bytes, d.problem);
  Statement labels(received, "SELECT label, note FROM labels WHERE record = ?1", d.id);
  if (labels.Step()) labels.Read(d.label, d.note);
  return d;
}

}  // namespace

DesignStore::DesignStore(const std::string& folder)
    : received_(OpenReceived(folder)), index_(OpenIndex(PathIn(folder), received_)) {}

std::string DesignStore::PathIn(const std::string& folder) {
  return (std::filesystem::path(folder) / "varnix-designs.db").string();
}

std::vector<StoredDesign> DesignStore::List(const std::string& file) {
  const std::string sql = std::string(kSelect) + " WHERE ?1 = '' OR folded_name = ?2 OR file_uuid = ?1 ORDER BY id";
  const std::string foldedName = FoldedName(file);
  Statement rows(index_, sql.c_str(), file, foldedName);
  std::vector<StoredDesign> designs;
  while (rows.Step()) designs.push_back(ReadStored(rows, received_));
  return designs;
}

std::optional<StoredDesign> DesignStore::Find(std::int64_t id) {
  const std::string sql = std::string(kSelect) + " WHERE id = ?1";
  Statement row(index_, sql.c_str(), id);
  if (!row.Step()) return std::nullopt;
  return ReadStored(row, received_);
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
  if (!Has(id)) return false;
  Transaction transaction(received_);
  Statement(received_, "INSERT OR IGNORE INTO labels (record) SELECT number FROM records WHERE number = ?1", id).Step();
  Statement(received_,
            "UPDATE labels SET label = nullif(coalesce(?2, label), ''), note = nullif(coalesce(?3, note), '')"
            " WHERE record = ?1",
            id, label, note)
      .Step();
  const bool isKnown = sqlite3_changes(received_.handle()) == 1;
  transaction.Commit();
  return isKnown;
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
