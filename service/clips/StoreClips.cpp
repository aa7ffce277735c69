// The store's operations on clips.
#include "design/Names.h"
#include "store/Store.h"

namespace service {
namespace {

constexpr char kSelect[] =
    "SELECT clips.content, xml_type, title,"
    " (SELECT label FROM records AS r WHERE r.content = clips.content AND label IS NOT NULL"
    "  ORDER BY number DESC LIMIT 1),"
    " strftime('%Y-%m-%dT%H:%M:%fZ', max(received) / 1000.0, 'unixepoch'), count(*),"
    " (SELECT length(bytes) FROM contents WHERE number = clips.content), tags"
    " FROM clips JOIN records USING (content) WHERE ";
constexpr char kGroup[] = " GROUP BY clips.content ORDER BY max(records.number) DESC LIMIT ?4";
constexpr char kFound[] =
    "(?1 = '' OR instr(words, ?1) > 0) AND (?2 = '' OR xml_type = ?2) AND (?3 = '' OR instr(tags, ?3) > 0)";

Clip ReadClip(const Statement& row) {
  Clip clip;
  std::string tags;
  row.Read(clip.id, clip.xmlType, clip.title, clip.label, clip.receivedAt, clip.times, clip.bytes, tags);
  clip.tags = TagsIn(tags);
  return clip;
}

std::string Delimited(const std::string& tag) { return tag.empty() ? tag : '\n' + tag + '\n'; }

}  // namespace

ClipList Store::Clips(const ClipFilter& filter, std::int64_t limit) {
  CheckFile();
  Database database(path_);  // a separate connection: a search takes time, and polls must not wait for it
  const std::string text = solution::FoldCase(filter.text), tag = Delimited(filter.tag);
  ClipList list;
  const std::string counting =
      std::string("SELECT count(DISTINCT content) FROM clips JOIN records USING (content) WHERE ") + kFound;
  Statement count(database, counting.c_str(), text, filter.xmlType, tag);
  if (count.Step()) count.Read(list.total);
  Statement rows(database, (std::string(kSelect) + kFound + kGroup).c_str(), text, filter.xmlType, tag, limit);
  while (rows.Step()) list.clips.push_back(ReadClip(rows));
  return list;
}

std::optional<Clip> Store::FindClip(std::int64_t id) {
  const std::lock_guard lock(mutex_);
  Statement row(database_, (std::string(kSelect) + "clips.content = ?1 GROUP BY clips.content").c_str(), id);
  if (!row.Step()) return std::nullopt;
  return ReadClip(row);
}

std::string Store::ClipContent(std::int64_t id) {
  const std::lock_guard lock(mutex_);
  Statement row(database_, "SELECT bytes FROM clips JOIN contents ON number = content WHERE content = ?1", id);
  std::string bytes;
  if (row.Step()) row.Read(bytes);
  return bytes;
}

std::int64_t Store::ClipOf(std::int64_t record) {
  const std::lock_guard lock(mutex_);
  Statement row(database_, "SELECT content FROM clips JOIN records USING (content) WHERE records.number = ?1", record);
  std::int64_t id = 0;
  if (row.Step()) row.Read(id);
  return id;
}

bool Store::TagClip(std::int64_t id, const std::vector<std::string>& tags) {
  const std::lock_guard lock(mutex_);
  CheckFile();
  std::string text;
  for (const std::string& tag : tags) text += Delimited(tag);
  Statement(database_, "UPDATE clips SET tags = ?2 WHERE content = ?1", id, text).Step();
  const bool isClip = sqlite3_changes(database_.handle()) == 1;
  if (isClip) changed_(Topic::kClips);
  return isClip;
}

bool Store::DeleteClip(std::int64_t id) {
  {
    const std::lock_guard lock(mutex_);
    CheckFile();
    Transaction transaction(database_);
    Statement(database_, "DELETE FROM clips WHERE content = ?1", id).Step();
    if (sqlite3_changes(database_.handle()) == 0) return false;
    Statement(database_, "DELETE FROM records WHERE content = ?1 AND kind IN ('push', 'clip')", id).Step();
    transaction.Commit();
    changed_(Topic::kClips);
    changed_(Topic::kRecords);
  }
  GiveSpaceBack();
  return true;
}

}  // namespace service
