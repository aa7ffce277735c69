// Whole-file reading.
#pragma once

#include <string>

namespace FileIO {

/// Reads all bytes of the regular file at `path` (UTF-8, used as given) into `content`. False, with the message in
/// `error`, on failure; `content` is then unchanged. Anything but a regular file cannot be opened, so that a FIFO or a
/// device never blocks the caller. Any thread; blocks while it reads.
bool Read(const std::string& path, std::string& content, std::string& error);

/// Appends the bytes to `content` instead, and reserves some room after them.
bool ReadAppending(const std::string& path, std::string& content, std::string& error);

}  // namespace FileIO
