#include "store/Contents.h"

#include "system/Cryptography.h"

namespace service {

KeptBytes KeepOnce(Database& database, const char* table, const char* column, std::string_view bytes) {
  const ContentHash hash = HashOf(bytes);
  const Blob key{{reinterpret_cast<const char*>(hash.data()), hash.size()}};
  const std::string find = std::string("SELECT number FROM ") + table + " WHERE hash = ?1";
  Statement row(database, find.c_str(), key);
  KeptBytes kept;
  if (row.Step()) {
    row.Read(kept.number);
    return kept;
  }
  const std::string add = std::string("INSERT INTO ") + table + " (hash, " + column + ") VALUES (?1, ?2)";
  Statement(database, add.c_str(), key, Blob{bytes}).Step();
  return {sqlite3_last_insert_rowid(database.handle()), true};
}

}  // namespace service
