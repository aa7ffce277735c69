#include "store/Database.h"

#include <new>
#include <utility>

namespace service {
namespace {

constexpr int kStepsBetweenQuestions = 10000;  // of SQLite's machine: about a millisecond

void Check(sqlite3* database, int result) {
  if (result == SQLITE_BUSY) throw DatabaseInUse(sqlite3_errmsg(database));
  if (result != SQLITE_OK) throw std::runtime_error(sqlite3_errmsg(database));
}

}  // namespace

Database::Database(const std::string& path) {
  sqlite3* handle = nullptr;
  const int result =
      sqlite3_open_v2(path.c_str(), &handle, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX, nullptr);
  handle_.reset(handle);
  if (handle == nullptr) throw std::bad_alloc();
  Check(handle, result);
  // A commit returns only when it is on the disk (synchronous).
  Execute(
      "PRAGMA busy_timeout = 5000; PRAGMA journal_mode = WAL; PRAGMA synchronous = FULL;"
      "PRAGMA journal_size_limit = 67108864; PRAGMA foreign_keys = ON");
}

void Database::Execute(const char* sql) { Check(handle(), sqlite3_exec(handle(), sql, nullptr, nullptr, nullptr)); }

void Statement::Prepare(const char* sql) {
  sqlite3_stmt* statement = nullptr;
  Check(database_, sqlite3_prepare_v2(database_, sql, -1, &statement, nullptr));
  statement_.reset(statement);
}

bool Statement::Step() {
  const int result = sqlite3_step(statement_.get());
  if (result == SQLITE_ROW) return true;
  if (result != SQLITE_DONE) throw std::runtime_error(sqlite3_errmsg(database_));
  return false;
}

void Statement::ReadColumn(int column, std::int64_t& value) const {
  value = sqlite3_column_int64(statement_.get(), column);
}

void Statement::ReadColumn(int column, std::string& value) const {
  const auto* bytes = static_cast<const char*>(sqlite3_column_blob(statement_.get(), column));
  const int size = sqlite3_column_bytes(statement_.get(), column);
  value.assign(bytes == nullptr ? "" : bytes, bytes == nullptr ? 0 : static_cast<std::size_t>(size));
}

bool Statement::IsNull(int column) const { return sqlite3_column_type(statement_.get(), column) == SQLITE_NULL; }

void Statement::Bind(int index, std::int64_t value) {
  Check(database_, sqlite3_bind_int64(statement_.get(), index, value));
}

// A view without an address would be bound as null.
void Statement::Bind(int index, std::string_view text) {
  Check(database_, sqlite3_bind_text64(statement_.get(), index, text.empty() ? "" : text.data(), text.size(),
                                       SQLITE_STATIC, SQLITE_UTF8));
}

void Statement::Bind(int index, Blob blob) {
  Check(database_, sqlite3_bind_blob64(statement_.get(), index, blob.bytes.empty() ? "" : blob.bytes.data(),
                                       blob.bytes.size(), SQLITE_STATIC));
}

Interruption::Interruption(Database& database, std::function<bool()> isWanted)
    : database_(database), isWanted_(std::move(isWanted)) {
  const auto ask = [](void* self) { return static_cast<Interruption*>(self)->isWanted_() ? 0 : 1; };
  sqlite3_progress_handler(database.handle(), kStepsBetweenQuestions, ask, this);
}

Interruption::~Interruption() { sqlite3_progress_handler(database_.handle(), 0, nullptr, nullptr); }

Transaction::Transaction(Database& database) : database_(database) { database_.Execute("BEGIN IMMEDIATE"); }

Transaction::~Transaction() {
  if (!committed_) sqlite3_exec(database_.handle(), "ROLLBACK", nullptr, nullptr, nullptr);
}

void Transaction::Commit() {
  database_.Execute("COMMIT");
  committed_ = true;
}

}  // namespace service
