// Files that only their owner may change or read.
#pragma once

#include <optional>
#include <string>

namespace service {

/// Throws std::runtime_error when another user owns the file or folder or can write to it: what is there could have
/// FileMaker carry out commands of theirs. Accepts what does not exist yet.
void CheckPrivate(const std::string& path);

/// The account key that is kept in the data folder; nothing when there is none.
std::optional<std::string> ReadKey(const std::string& folder);

/// The same, after making one at random and writing it, for this user only, where there was none. Throws
/// std::runtime_error.
std::string ReadOrMakeKey(const std::string& folder);

}  // namespace service
