#include "system/PrivateFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <stdexcept>

#include "system/Cryptography.h"

namespace service {
namespace {

std::string KeyPath(const std::string& folder) { return folder + "/key"; }

void WriteKey(const std::string& folder, const std::string& key) {
  const std::string path = KeyPath(folder);
  const std::string line = key + '\n';
  const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
  const bool written =
      file >= 0 && write(file, line.data(), line.size()) == static_cast<ssize_t>(line.size()) && fsync(file) == 0;
  const int reason = errno;
  if (file >= 0) close(file);
  if (written) return;
  if (file >= 0) unlink(path.c_str());
  throw std::runtime_error(path + " cannot be written: " + std::strerror(reason));
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

std::optional<std::string> ReadKey(const std::string& folder) {
  std::string key;
  if (!std::getline(std::ifstream(KeyPath(folder)), key) || key.empty()) return std::nullopt;
  return key;
}

std::string ReadOrMakeKey(const std::string& folder) {
  if (access(KeyPath(folder).c_str(), F_OK) != 0) WriteKey(folder, RandomKey());
  CheckPrivate(KeyPath(folder));
  const auto key = ReadKey(folder);
  if (!key) throw std::runtime_error(KeyPath(folder) + " has no key in its first line");
  return *key;
}

}  // namespace service
