// Makes sure that only one process at a time works in a folder.
#pragma once

#include <memory>
#include <string>

namespace service {

/// Held from construction to destruction; the system releases it when the process dies.
class FolderLock {
 public:
  /// Throws DatabaseInUse while another process holds it, std::runtime_error when the folder cannot be opened.
  explicit FolderLock(const std::string& folder);

 private:
  struct Close {
    void operator()(const int* descriptor) const;
  };
  std::unique_ptr<const int, Close> descriptor_;
};

}  // namespace service
