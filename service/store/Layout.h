// The tables of the store.
#pragma once

#include "store/Database.h"

namespace service {

/// Rewrites a database so that it can later release unused pages a few at a time.
inline constexpr char kMakeShrinkable[] = "PRAGMA auto_vacuum = INCREMENTAL; VACUUM";

/// Whether the tables are those of this version of the service.
bool HasPresentLayout(Database& database);

/// Creates the tables in a new database, or updates those of an older version of this service. Throws
/// std::runtime_error when a newer version wrote them.
void PrepareLayout(Database& database);

}  // namespace service
