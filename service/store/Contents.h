// Tables that store identical bytes only once, found by their hash.
#pragma once

#include "store/Database.h"

namespace service {

struct KeptBytes {
  std::int64_t number = 0;  ///< of the row
  bool isNew = false;
};

/// The row of `table` with `bytes` in `column`, added if it is missing. The table must also have the columns "number"
/// and "hash".
KeptBytes KeepOnce(Database& database, const char* table, const char* column, std::string_view bytes);

}  // namespace service
