// Tables in which identical bytes are kept once, found by their hash.
#pragma once

#include "Database.h"

namespace service {

struct KeptBytes {
  std::int64_t number = 0;  ///< of the row
  bool isNew = false;
};

/// The row of `table` that holds `bytes` in `column`, which is added when it is missing. The table has the columns
/// "number" and "hash", too.
KeptBytes KeepOnce(Database& database, const char* table, const char* column, std::string_view bytes);

}  // namespace service
