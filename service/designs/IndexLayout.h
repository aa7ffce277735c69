// The tables of the index of designs.
#pragma once

#include <string>

#include "store/Database.h"

namespace service {

/// Opens or creates the index at `path`. One of the earlier version is emptied, after its labels were copied to
/// `received`, the database of the store. Throws std::runtime_error when a newer version wrote it.
Database OpenIndex(const std::string& path, Database& received);

}  // namespace service
