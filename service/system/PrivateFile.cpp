#include "system/PrivateFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "system/Cryptography.h"

namespace service {
namespace {

std::string KeyPath(const std::string& folder) { return folder + "/key"; }

// Failures are ignored: some file systems refuse this, and only a power failure would show it.
void FlushFolder(const std::filesystem::path& folder) {
  const int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor < 0) return;
  fsync(descriptor);
  close(descriptor);
}

// A file without content was left by an earlier version that was killed while it wrote the key.
bool HasContent(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && status.st_size > 0;
}

}  // namespace

void CheckPrivate(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) return;
  if (status.st_uid != geteuid()) throw std::runtime_error(path + " belongs to another user");
  if ((status.st_mode & (S_IWGRP | S_IWOTH)) != 0) {
    throw std::runtime_error("others can write to " + path + ": run chmod go-w on it");
  }
}

void ReplaceFile(const std::string& path, const std::string& text) {
  const std::string next = path + ".new";
  unlink(next.c_str());  // of a process that was killed
  const int file = open(next.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
  const bool isWritten =
      file >= 0 && write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size()) && fsync(file) == 0;
  int reason = errno;
  if (file >= 0) close(file);
  if (isWritten && rename(next.c_str(), path.c_str()) == 0) {
    return FlushFolder(std::filesystem::path(path).parent_path());
  }
  if (isWritten) reason = errno;
  unlink(next.c_str());
  throw std::runtime_error(path + " cannot be written: " + std::strerror(reason));
}

std::optional<std::string> ReadKey(const std::string& folder) {
  std::string key;
  if (!std::getline(std::ifstream(KeyPath(folder)), key) || key.empty()) return std::nullopt;
  return key;
}

std::string ReadOrMakeKey(const std::string& folder) {
  if (!HasContent(KeyPath(folder))) ReplaceFile(KeyPath(folder), RandomKey() + '\n');
  CheckPrivate(KeyPath(folder));
  const auto key = ReadKey(folder);
  if (!key) throw std::runtime_error(KeyPath(folder) + " has no key in its first line");
  return *key;
}

}  // namespace service
