#include "host/FileIO.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <exception>
#include <utility>

#include "core/FileDescriptor.h"

namespace {

// Room beyond the reported size: the end of the file is reached without growing the buffer, and most files that report
// no size at all (those below /proc) fit.
constexpr std::size_t kSpareBytes = 4096;
// macOS refuses a single read of 2 GiB or more.
constexpr std::size_t kLargestRead = std::size_t{1} << 30;

bool IsRegular(const struct stat& info) { return S_ISREG(info.st_mode); }

FileDescriptor OpenRegularFile(const std::string& path, struct stat& info) {
  // Checked before opening, because opening alone wakes a FIFO's writer or rewinds a tape.
  if (stat(path.c_str(), &info) != 0 || !IsRegular(info)) return FileDescriptor(-1);
  // Without blocking, in case something else has replaced the file since.
  return FileDescriptor(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
}

/// Appends the rest of `file` to `content`, whatever size it reported: it may be growing or shrinking.
bool ReadToEnd(int file, std::size_t reportedSize, std::string& content) {
  std::size_t used = content.size();
  // An exact amount, because the string would double its size otherwise, with room for the end of an upload's form.
  content.reserve(used + reportedSize + 2 * kSpareBytes);
  content.resize(used + reportedSize + kSpareBytes);
  for (;;) {
    if (used == content.size()) content.resize(2 * used);
    const ssize_t count = read(file, &content[used], std::min(content.size() - used, kLargestRead));
    if (count == 0) break;
    if (count > 0) {
      used += static_cast<std::size_t>(count);
    } else if (errno != EINTR) {
      return false;
    }
  }
  content.resize(used);
  return true;
}

}  // namespace

bool FileIO::ReadAppending(const std::string& path, std::string& content, std::string& error) {
  struct stat info;
  const FileDescriptor file = OpenRegularFile(path, info);
  if (!file.IsOpen() || fstat(file.get(), &info) != 0 || !IsRegular(info)) {
    error = "ERROR: Could not open file: " + path;
    return false;
  }
  const std::size_t before = content.size();
  try {
    if (ReadToEnd(file.get(), static_cast<std::size_t>(info.st_size), content)) return true;
  } catch (const std::exception&) {  // more bytes than a string or the memory can hold
  }
  content.resize(before);
  error = "ERROR: Failed to read file: " + path;
  return false;
}

bool FileIO::Read(const std::string& path, std::string& content, std::string& error) {
  std::string bytes;
  if (!ReadAppending(path, bytes, error)) return false;
  content = std::move(bytes);
  return true;
}
