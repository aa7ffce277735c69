// Files that only their owner may change or read.
#pragma once

#include <optional>
#include <string>

namespace service {

/// Throws std::runtime_error when another user owns the file or folder or can write to it, because they could make
/// FileMaker run commands. Accepts a path that does not exist yet.
void CheckPrivate(const std::string& path);

/// Writes the file, readable by this user only. However this ends, even by a kill or a power failure, the file then has
/// its former content or all of `text`. One process at a time. Throws std::runtime_error.
void ReplaceFile(const std::string& path, const std::string& text);

/// The account key that is kept in the data folder; nothing when there is none.
std::optional<std::string> ReadKey(const std::string& folder);

/// The account key in the data folder. If there is none, makes a random one and writes it, readable by this user only.
/// Throws std::runtime_error.
std::string ReadOrMakeKey(const std::string& folder);

}  // namespace service
