// The tables of the store.
#pragma once

#include "Database.h"

namespace service {

/// Creates the tables in a new database, and brings those of an older version of this service up to date. Throws
/// std::runtime_error when a newer version wrote them.
void PrepareLayout(Database& database);

}  // namespace service
