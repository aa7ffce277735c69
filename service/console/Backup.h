// Copies of the store's database.
#pragma once

#include <string>

namespace service {

/// Makes a consistent copy of the database in `folder` in a new file next to it, readable by this user only. The store
/// can be used meanwhile. Returns the copy's path. Throws std::runtime_error.
std::string MakeBackup(const std::string& folder);

/// Removes copies that were left in `folder` because the service was killed.
void RemoveBackups(const std::string& folder);

}  // namespace service
