// Copies of the store's database.
#pragma once

#include <string>

namespace service {

/// Copies the database in `folder`, as it is at one moment, to a new file next to it, for this user only. Others may go
/// on using the store meanwhile. Returns the copy's path. Throws std::runtime_error.
std::string MakeBackup(const std::string& folder);

/// Removes the copies that were left in `folder` when the service was killed.
void RemoveBackups(const std::string& folder);

}  // namespace service
