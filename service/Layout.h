// The tables of the store.
#pragma once

#include "Database.h"

namespace service {

/// Creates the tables in a new database, and brings those of an older version of this service up to date. Throws
/// std::runtime_error when a newer version wrote them.
void PrepareLayout(Database& database);

/// The number of the row that holds `bytes`, which is added when it is missing: identical contents are kept once.
std::int64_t KeepContent(Database& database, std::string_view bytes);

}  // namespace service
