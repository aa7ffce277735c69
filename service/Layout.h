// The tables of the store.
#pragma once

#include "Database.h"

namespace service {

/// Has a database become shorter when its unused pages are given back a few at a time. Writes it anew.
inline constexpr char kMakeShrinkable[] = "PRAGMA auto_vacuum = INCREMENTAL; VACUUM";

/// Creates the tables in a new database, and brings those of an older version of this service up to date. Throws
/// std::runtime_error when a newer version wrote them.
void PrepareLayout(Database& database);

}  // namespace service
