// Deletions from the store, its size, and what it stores for the console.
#include <algorithm>
#include <thread>

#include "store/Elapsed.h"
#include "store/Layout.h"
#include "store/Store.h"

namespace service {
namespace {

// A poll that arrives meanwhile waits for one step at most.
constexpr std::int64_t kStepBytes = 8 << 20;
constexpr std::chrono::milliseconds kPauseBetweenSteps{5};
constexpr std::int64_t kIncremental = 2;       // of SQLite's auto_vacuum
constexpr std::int64_t kLongestWork = 60'000;  // ms; no type of command takes as long

std::int64_t Setting(Database& database, const char* sql) {
  std::int64_t value = 0;
  Statement row(database, sql);
  if (row.Step()) row.Read(value);
  return value;
}

}  // namespace

Pruned Store::Prune(std::chrono::seconds age, std::int64_t keep) {
  Pruned pruned;
  {
    const std::lock_guard lock(mutex_);
    CheckFile();
    const std::int64_t now = clock_(), before = now - std::chrono::milliseconds(age).count();
    Transaction transaction(database_);
    Statement(database_,
              "DELETE FROM records WHERE received < ?1 AND (SELECT count(*) FROM (SELECT 1 FROM records AS newer"
              " WHERE newer.kind = records.kind AND newer.name = records.name AND newer.number > records.number"
              " LIMIT ?2)) >= ?2 AND kind <> 'clip' AND number NOT IN (SELECT max(number) FROM records JOIN clips USING"
              " (content) WHERE tags <> '' GROUP BY content)",
              before, keep)
        .Step();
    pruned.records = sqlite3_changes(database_.handle());
    Statement(database_,
              "DELETE FROM commands WHERE finished < ?1 AND id NOT IN (SELECT command FROM records"
              " WHERE command IS NOT NULL)"
              " AND NOT (state = 'cancelled' AND records_before IS NOT NULL AND delivered > ?2 AND delivered <= ?3)",
              before, now - kLongestWork, now)
        .Step();
    pruned.commands = sqlite3_changes(database_.handle());
    transaction.Commit();
    if (pruned.commands + pruned.records > 0) ReportDeletion();
  }
  GiveSpaceBack();
  return pruned;
}

// A failure is not reported, because the deletion itself has succeeded: the space is reused, or released the next time.
void Store::GiveSpaceBack() try {
  while (!isEnding_ && (DropContents() || Shrink())) std::this_thread::sleep_for(kPauseBetweenSteps);
} catch (const std::runtime_error&) {
}

bool Store::DropContents() {
  const std::lock_guard lock(mutex_);
  CheckFile();
  Statement(database_,
            "DELETE FROM contents WHERE number IN (SELECT number FROM"
            " (SELECT number, sum(length(bytes)) OVER (ORDER BY number) - length(bytes) AS earlier FROM contents"
            "  WHERE NOT EXISTS (SELECT 1 FROM records WHERE content = contents.number))"
            " WHERE earlier < ?1 LIMIT 1000)",
            kStepBytes)
      .Step();
  return sqlite3_changes(database_.handle()) > 0;
}

bool Store::Shrink() {
  const std::lock_guard lock(mutex_);
  CheckFile();
  const std::int64_t unused = Setting(database_, "PRAGMA freelist_count");
  if (unused == 0) return false;
  if (Setting(database_, "PRAGMA auto_vacuum") != kIncremental) {
    database_.Execute(kMakeShrinkable);  // takes long, but only once
    return false;
  }
  const std::int64_t pages = kStepBytes / Setting(database_, "PRAGMA page_size");
  database_.Execute(("PRAGMA incremental_vacuum(" + std::to_string(pages) + ')').c_str());
  return Setting(database_, "PRAGMA freelist_count") < unused;
}

void Store::ReportDeletion() {
  for (const Topic topic : {Topic::kCommands, Topic::kRecords, Topic::kClips}) changed_(topic);
}

bool Store::DeleteRecord(std::int64_t number) {
  {
    const std::lock_guard lock(mutex_);
    CheckFile();
    Statement(database_, "DELETE FROM records WHERE number = ?1", number).Step();
    if (sqlite3_changes(database_.handle()) == 0) return false;
    ReportDeletion();
  }
  GiveSpaceBack();
  return true;
}

std::vector<std::int64_t> Store::Repetitions(std::int64_t number) {
  const std::lock_guard lock(mutex_);
  Statement rows(database_,
                 "SELECT number FROM records WHERE number >= ?1 AND kind IN ('ingest', 'snapshot', 'upload')"
                 " AND content = (SELECT content FROM records WHERE number = ?1) ORDER BY number",
                 number);
  std::vector<std::int64_t> numbers;
  while (rows.Step()) rows.Read(numbers.emplace_back());
  return numbers;
}

Deletion Store::DeleteCommand(const std::string& id) {
  {
    const std::lock_guard lock(mutex_);
    CheckFile();
    ExpireCommands();
    Transaction transaction(database_);
    std::string state;
    std::int64_t delivered = 0;
    std::optional<std::int64_t> recordsBefore;
    {
      Statement find(database_, "SELECT state, delivered, records_before FROM commands WHERE id = ?1", id);
      if (!find.Step()) return Deletion::kUnknown;
      find.Read(state, delivered, recordsBefore);
    }
    if (state == "queued" || state == "delivered") return Deletion::kNotFinished;
    const bool isForgotten = state == "cancelled" && recordsBefore;
    if (isForgotten && IsWithin(delivered, kLongestWork, clock_())) return Deletion::kAnswerMayCome;
    Statement(database_, "DELETE FROM records WHERE command = ?1 AND kind = 'diagnostic'", id).Step();
    Statement(database_, "UPDATE records SET command = NULL WHERE command = ?1", id).Step();
    Statement(database_, "DELETE FROM commands WHERE id = ?1", id).Step();
    transaction.Commit();
    ReportDeletion();
  }
  GiveSpaceBack();
  return Deletion::kDeleted;
}

std::vector<KindSize> Store::Sizes() {
  const std::lock_guard lock(mutex_);
  Statement rows(database_,
                 "SELECT kind, sum(times), sum(length(bytes)) FROM"
                 " (SELECT kind, content, count(*) AS times FROM records GROUP BY kind, content)"
                 " JOIN contents ON number = content GROUP BY kind ORDER BY kind");
  std::vector<KindSize> sizes;
  while (rows.Step()) {
    KindSize& size = sizes.emplace_back();
    rows.Read(size.kind, size.count, size.bytes);
  }
  return sizes;
}

Retention Store::GetRetention() {
  const std::lock_guard lock(mutex_);
  Statement row(database_,
                "SELECT (SELECT value FROM settings WHERE name = 'retention days'),"
                " (SELECT value FROM settings WHERE name = 'retention keep')");
  Retention retention;
  if (row.Step()) row.Read(retention.days, retention.keep);
  return retention;
}

void Store::SetRetention(const Retention& retention) {
  const std::lock_guard lock(mutex_);
  CheckFile();
  Transaction transaction(database_);
  const std::pair<const char*, std::optional<std::int64_t>> settings[] = {{"retention days", retention.days},
                                                                          {"retention keep", retention.keep}};
  for (const auto& [name, value] : settings) {
    Statement(database_, "DELETE FROM settings WHERE name = ?1", name).Step();
    if (value) Statement(database_, "INSERT INTO settings (name, value) VALUES (?1, ?2)", name, *value).Step();
  }
  transaction.Commit();
}

std::vector<ConsoleSession> Store::Sessions() {
  const std::lock_guard lock(mutex_);
  Statement rows(database_, "SELECT ends, hash FROM sessions WHERE ends > ?1 ORDER BY rowid", clock_());
  std::vector<ConsoleSession> sessions;
  while (rows.Step()) {
    ConsoleSession session;
    std::string hash;
    rows.Read(session.ends, hash);
    std::copy_n(hash.begin(), std::min(hash.size(), session.hash.size()), session.hash.begin());
    sessions.push_back(session);
  }
  return sessions;
}

void Store::KeepSession(const ConsoleSession& session, std::size_t most) {
  const std::lock_guard lock(mutex_);
  CheckFile();
  Transaction transaction(database_);
  const Blob hash{{reinterpret_cast<const char*>(session.hash.data()), session.hash.size()}};
  Statement(database_, "INSERT INTO sessions (hash, ends) VALUES (?1, ?2)", hash, session.ends).Step();
  Statement(database_,
            "DELETE FROM sessions WHERE ends <= ?1 OR hash NOT IN"
            " (SELECT hash FROM sessions ORDER BY rowid DESC LIMIT ?2)",
            clock_(), static_cast<std::int64_t>(most))
      .Step();
  transaction.Commit();
}

}  // namespace service
