// What is deleted from the store, how large it is, and what it keeps for the console.
#include <algorithm>

#include "Store.h"

namespace service {

Pruned Store::Prune(std::chrono::seconds age, std::int64_t keep) {
  const std::lock_guard lock(mutex_);
  CheckFile();
  const std::int64_t before = clock_() - std::chrono::milliseconds(age).count();
  Pruned pruned;
  {
    Transaction transaction(database_);
    Statement(database_,
              "DELETE FROM records WHERE received < ?1 AND (SELECT count(*) FROM records AS newer"
              " WHERE newer.kind = records.kind AND newer.name = records.name AND newer.number > records.number) >= ?2",
              before, keep)
        .Step();
    pruned.records = sqlite3_changes(database_.handle());
    Statement(database_,
              "DELETE FROM commands WHERE finished < ?1 AND id NOT IN (SELECT command FROM records"
              " WHERE command IS NOT NULL)",
              before)
        .Step();
    pruned.commands = sqlite3_changes(database_.handle());
    database_.Execute("DELETE FROM contents WHERE number NOT IN (SELECT content FROM records)");
    transaction.Commit();
  }
  if (pruned.commands + pruned.records == 0) return pruned;
  TellOfDeletion();
  database_.Execute("VACUUM");
  return pruned;
}

void Store::TellOfDeletion() {
  for (const Change change : {Change::kCommands, Change::kRecords, Change::kClips}) changed_(change);
}

bool Store::DeleteRecord(std::int64_t number) {
  const std::lock_guard lock(mutex_);
  CheckFile();
  Transaction transaction(database_);
  std::int64_t content = 0;
  {
    Statement find(database_, "SELECT content FROM records WHERE number = ?1", number);
    if (!find.Step()) return false;
    find.Read(content);
  }
  Statement(database_, "DELETE FROM records WHERE number = ?1", number).Step();
  Statement(database_,
            "DELETE FROM contents WHERE number = ?1 AND NOT EXISTS (SELECT 1 FROM records WHERE content = ?1)", content)
      .Step();
  transaction.Commit();
  TellOfDeletion();
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
  const std::lock_guard lock(mutex_);
  CheckFile();
  ExpireCommands();
  Transaction transaction(database_);
  {
    Statement find(database_, "SELECT state FROM commands WHERE id = ?1", id);
    if (!find.Step()) return Deletion::kUnknown;
    std::string state;
    find.Read(state);
    if (state == "queued" || state == "delivered") return Deletion::kNotFinished;
  }
  Statement(database_, "DELETE FROM records WHERE command = ?1 AND kind = 'diagnostic'", id).Step();
  database_.Execute("DELETE FROM contents WHERE number NOT IN (SELECT content FROM records)");
  Statement(database_, "UPDATE records SET command = NULL WHERE command = ?1", id).Step();
  Statement(database_, "DELETE FROM commands WHERE id = ?1", id).Step();
  transaction.Commit();
  TellOfDeletion();
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
