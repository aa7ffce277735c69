// What the store keeps about itself: the sessions of the console.
#include <algorithm>

#include "Store.h"

namespace service {

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
