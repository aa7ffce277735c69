#include "console/Backup.h"

#include <stdlib.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <stdexcept>

#include "store/Database.h"
#include "store/Store.h"

namespace service {
namespace {

constexpr char kPrefix[] = ".varnix-backup-";  // unlike the names that people give their copies

}  // namespace

std::string MakeBackup(const std::string& folder) {
  std::string path = (std::filesystem::path(folder) / (std::string(kPrefix) + "XXXXXX")).string();
  const int file = mkstemp(path.data());
  if (file < 0) throw std::runtime_error(path + " cannot be written: " + std::strerror(errno));
  close(file);
  try {
    Database database(Store::PathIn(folder));
    Statement(database, "VACUUM INTO ?1", path).Step();
  } catch (...) {
    std::error_code ignored;
    std::filesystem::remove(path, ignored);
    throw;
  }
  return path;
}

void RemoveBackups(const std::string& folder) {
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    std::error_code ignored;
    if (entry.path().filename().string().starts_with(kPrefix)) std::filesystem::remove(entry.path(), ignored);
  }
}

}  // namespace service
