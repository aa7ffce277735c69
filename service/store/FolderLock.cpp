#include "store/FolderLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "store/Database.h"

namespace service {

FolderLock::FolderLock(const std::string& folder)
    : descriptor_(new int(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))) {
  if (*descriptor_ < 0) throw std::system_error(errno, std::generic_category());
  if (flock(*descriptor_, LOCK_EX | LOCK_NB) != 0) throw DatabaseInUse("the folder is locked");
}

void FolderLock::Close::operator()(const int* descriptor) const {
  if (*descriptor >= 0) close(*descriptor);
  delete descriptor;
}

}  // namespace service
