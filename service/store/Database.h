// A SQLite database whose committed changes survive a killed process and a power failure.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace service {

class DatabaseInUse : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Bytes that SQLite keeps verbatim, text or not.
struct Blob {
  std::string_view bytes;
};

/// One thread at a time. Every operation throws std::runtime_error with SQLite's message when it fails.
class Database {
 public:
  /// Opens or creates the file at `path`. Several connections may read it at the same time; a writer waits for its
  /// turn, a few seconds at most. Throws DatabaseInUse when another program has locked it.
  explicit Database(const std::string& path);

  /// Carries out statements without parameters or rows.
  void Execute(const char* sql);

  sqlite3* handle() const { return handle_.get(); }

 private:
  struct Close {
    void operator()(sqlite3* handle) const { sqlite3_close(handle); }
  };
  std::unique_ptr<sqlite3, Close> handle_;
};

/// One statement with its parameters ?1, ?2 ... Texts passed to it must outlive it.
class Statement {
 public:
  template <class... Values>
  Statement(Database& database, const char* sql, const Values&... values) : database_(database.handle()) {
    Prepare(sql);
    int index = 0;
    (Bind(++index, values), ...);
  }

  /// Moves to the next row; false when there is none.
  bool Step();

  /// Reads the first columns of the current row into `values`, in order: std::int64_t, std::string or an optional of
  /// either. Null reads as 0, "" and nullopt.
  template <class... Values>
  void Read(Values&... values) const {
    int column = 0;
    (ReadColumn(column++, values), ...);
  }

 private:
  void ReadColumn(int column, std::int64_t& value) const;
  void ReadColumn(int column, std::string& value) const;
  bool IsNull(int column) const;
  template <class Value>
  void ReadColumn(int column, std::optional<Value>& value) const {
    value.reset();
    if (!IsNull(column)) ReadColumn(column, value.emplace());
  }

  void Prepare(const char* sql);
  void Bind(int index, std::int64_t value);
  void Bind(int index, std::string_view text);
  void Bind(int index, const std::string& text) { Bind(index, std::string_view(text)); }
  void Bind(int index, const char* text) { Bind(index, std::string_view(text)); }
  void Bind(int index, Blob blob);
  template <class Value>
  void Bind(int index, const std::optional<Value>& value) {
    if (value) Bind(index, *value);
  }

  struct Finalize {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  };
  sqlite3* database_;
  std::unique_ptr<sqlite3_stmt, Finalize> statement_;
};

/// While it exists, statements of `database` fail once `isWanted`, which is called now and then, returns false.
class Interruption {
 public:
  Interruption(Database& database, std::function<bool()> isWanted);
  ~Interruption();
  Interruption(const Interruption&) = delete;
  Interruption& operator=(const Interruption&) = delete;

 private:
  Database& database_;
  std::function<bool()> isWanted_;
};

/// Changes between construction and Commit happen all or not at all.
class Transaction {
 public:
  explicit Transaction(Database& database);
  ~Transaction();
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;

  void Commit();

 private:
  Database& database_;
  bool committed_ = false;
};

}  // namespace service
