// Adds received designs to the index.
#include <algorithm>
#include <iterator>
#include <mutex>
#include <tuple>

#include "design/DesignReader.h"
#include "design/Names.h"
#include "designs/DesignStore.h"
#include "designs/StoredText.h"
#include "store/Contents.h"

namespace service {

struct IndexedElement {
  std::string kind, uuid, name, text;
};

namespace {

constexpr std::size_t kSampleBytes = 4096;  // enough to recognise an export

std::vector<IndexedElement> ElementsOf(const solution::Design& design, const std::atomic<bool>& stop) {
  std::vector<IndexedElement> elements;
  for (const auto& element : design.elements()) {
    if (stop) break;
    elements.push_back({std::string(NamesOf(element.kind).word), std::string(element.uuid), DisplayName(element),
                        StoredTextOf(design, element)});
  }
  return elements;
}

std::int64_t KeepText(Database& index, const std::string& text) {
  const auto [number, isNew] = KeepOnce(index, "texts", "body", text);
  if (isNew) {
    Statement(index, "INSERT INTO words (rowid, body) VALUES (?1, ?2)", number, solution::FoldCase(text)).Step();
  }
  return number;
}

// Removes texts that no element has any more from both tables.
void RemoveUnusedTexts(Database& index) {
  Statement rows(index, "SELECT number, body FROM texts WHERE number NOT IN (SELECT text FROM elements)");
  while (rows.Step()) {
    std::int64_t number = 0;
    std::string text;
    rows.Read(number, text);
    Statement(index, "INSERT INTO words (words, rowid, body) VALUES ('delete', ?1, ?2)", number,
              solution::FoldCase(text))
        .Step();
  }
  index.Execute("DELETE FROM texts WHERE number NOT IN (SELECT text FROM elements)");
}

template <class Origin>
std::vector<Origin> Without(const std::vector<Origin>& all, const std::vector<Origin>& others) {
  std::vector<Origin> left;
  std::set_difference(all.begin(), all.end(), others.begin(), others.end(), std::back_inserter(left));
  return left;
}

}  // namespace

bool LooksLikeExport(std::string_view content) {
  std::string head(content.substr(0, kSampleBytes));
  std::erase(head, '\0');  // of UTF-16
  return head.find("<FMSaveAsXML") != std::string::npos;
}

// What identifies a record, even in a database that was replaced by an older copy, in which numbers are given again.
struct DesignStore::Origin {
  std::int64_t number = 0, time = 0, content = 0;
  std::string hash;

  bool operator<(const Origin& other) const {
    return std::tie(number, time, content, hash) < std::tie(other.number, other.time, other.content, other.hash);
  }
};

struct DesignStore::Received {
  std::string kind, name, bytes;

  bool IsDesign() const {
    return kind == "ingest" || kind == "snapshot" || (kind == "upload" && LooksLikeExport(bytes));
  }
};

// What is stored about one record, computed before anything is locked.
struct DesignStore::Entry {
  bool isDesign = false;
  bool isKnown = false;  // its content is indexed
  std::string fileUuid, fileName, version;
  std::optional<std::string> problem;
  std::vector<IndexedElement> elements;
};

std::vector<DesignStore::Origin> DesignStore::Origins(Database& database, const char* sql) {
  std::vector<Origin> origins;
  Statement rows(database, sql);
  while (rows.Step()) {
    Origin& origin = origins.emplace_back();
    rows.Read(origin.number, origin.time, origin.content, origin.hash);
  }
  return origins;
}

std::vector<DesignStore::Origin> DesignStore::Seen() {
  return Origins(index_, "SELECT record, received, content, hash FROM seen ORDER BY record");
}

std::vector<DesignStore::Origin> DesignStore::Present() {
  return Origins(
      received_,
      "SELECT records.number, received, content, hash FROM records JOIN contents ON contents.number = content"
      " WHERE kind IN ('ingest', 'snapshot', 'upload') ORDER BY records.number");
}

std::optional<DesignStore::Received> DesignStore::Load(std::int64_t number) {
  Statement row(received_,
                "SELECT kind, name, bytes FROM records JOIN contents ON contents.number = content"
                " WHERE records.number = ?1",
                number);
  if (!row.Step()) return std::nullopt;
  Received received;
  row.Read(received.kind, received.name, received.bytes);
  return received;
}

bool DesignStore::Has(std::int64_t id) {
  if (Find(id)) return true;
  if (Statement(index_, "SELECT 1 FROM seen WHERE record = ?1", id).Step()) return false;
  const auto received = Load(id);
  return received && received->IsDesign();
}

DesignStore::Entry DesignStore::Examine(const Origin& origin, Received& received, const Begin& begin,
                                        const std::atomic<bool>& stop) {
  Entry entry;
  entry.isDesign = received.IsDesign();
  if (!entry.isDesign) return entry;
  Statement known(index_, "SELECT file_uuid, file_name, version, problem FROM designs WHERE content = ?1 LIMIT 1",
                  origin.content);
  entry.isKnown = known.Step();
  if (entry.isKnown) {
    known.Read(entry.fileUuid, entry.fileName, entry.version, entry.problem);
    return entry;
  }
  if (begin) begin(received.name);
  std::string error;
  const auto design = solution::ReadDesignBytes(std::move(received.bytes), received.name, error);
  if (design == nullptr) {
    entry.problem = error;
    const std::string_view name = received.name;
    entry.fileName = name.substr(0, name.size() - (name.ends_with(".xml") ? 4 : 0));
    return entry;
  }
  entry.fileUuid = design->document().Attribute("UUID");
  entry.fileName = design->fileName();
  entry.version = design->document().Attribute("Source");
  entry.elements = ElementsOf(*design, stop);
  return entry;
}

void DesignStore::Keep(const Origin& origin, std::int64_t bytes, const Entry& entry) {
  Transaction transaction(index_);
  Statement(index_, "INSERT OR IGNORE INTO seen (record, received, content, hash) VALUES (?1, ?2, ?3, ?4)",
            origin.number, origin.time, origin.content, Blob{origin.hash})
      .Step();
  if (sqlite3_changes(index_.handle()) == 0) return;  // another program was faster
  // A design that was received again without a change in between is not new.
  const bool isNews =
      entry.isDesign && !Statement(index_,
                                   "SELECT 1 FROM (SELECT content FROM designs WHERE file_uuid = ?1 AND file_name = ?2"
                                   " AND id < ?4 ORDER BY id DESC LIMIT 1) WHERE content = ?3",
                                   entry.fileUuid, entry.fileName, origin.content, origin.number)
                             .Step();
  if (isNews) {
    const bool isIndexed = Statement(index_, "SELECT 1 FROM designs WHERE content = ?1", origin.content).Step();
    Statement(index_,
              "INSERT INTO designs (id, content, received, file_uuid, file_name, folded_name, version, bytes, problem)"
              " VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9)",
              origin.number, origin.content, origin.time, entry.fileUuid, entry.fileName, FoldedName(entry.fileName),
              entry.version, bytes, entry.problem)
        .Step();
    for (const auto& element : entry.elements) {
      if (isIndexed) break;
      Statement(index_, "INSERT INTO elements (content, text, kind, uuid, name) VALUES (?1, ?2, ?3, ?4, ?5)",
                origin.content, KeepText(index_, element.text), element.kind, element.uuid, element.name)
          .Step();
    }
  }
  transaction.Commit();
}

void DesignStore::CatchUp(const std::atomic<bool>& stop, const Begin& begin) {
  // One thread at a time. Otherwise several threads would read and index the same export.
  static std::mutex turn;
  const std::lock_guard lock(turn);
  for (;;) {
    const auto seen = Seen();  // first: what another program adds meanwhile is not gone
    const auto present = Present();
    Forget(Without(seen, present));
    const auto pending = Without(present, Seen());
    if (pending.empty()) return;
    for (const Origin& origin : pending) {
      if (stop) return;
      auto received = Load(origin.number);
      if (!received) continue;
      const auto bytes = static_cast<std::int64_t>(received->bytes.size());
      const Entry entry = Examine(origin, *received, begin, stop);
      if (stop) return;
      Keep(origin, bytes, entry);
    }
  }
}

void DesignStore::Forget(const std::vector<Origin>& gone) {
  if (gone.empty()) return;
  Transaction transaction(index_);
  for (const Origin& origin : gone) {
    Statement(index_, "DELETE FROM seen WHERE record = ?1", origin.number).Step();
    Statement(index_, "DELETE FROM designs WHERE id = ?1", origin.number).Step();
    // The first of its repetitions may take its place.
    Statement(index_, "DELETE FROM seen WHERE content = ?1 AND record NOT IN (SELECT id FROM designs)", origin.content)
        .Step();
  }
  index_.Execute("DELETE FROM elements WHERE content NOT IN (SELECT content FROM designs)");
  RemoveUnusedTexts(index_);
  transaction.Commit();
}

}  // namespace service
