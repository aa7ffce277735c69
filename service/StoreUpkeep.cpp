// How the store gets rid of what is old, and what it keeps for the console.
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
  changed_(Change::kCommands);
  changed_(Change::kRecords);
  database_.Execute("VACUUM");
  return pruned;
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
