// The open files and their windows.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "calc/Environment.h"
#include "solution/DesignFunctions.h"
#include "solution/Solution.h"

namespace sim {

struct OpenFile {
  std::uint64_t id = 0;  ///< identifies the file to plug-ins; never 0
  Solution solution;
  const Account* account = nullptr;  ///< nullptr: no account of the file could log in
  calc::Variables globals;
  calc::Variables locals;  ///< of calculations outside any script
};

/// Files stay open, and pointers to them valid, as long as the object exists.
class Files {
 public:
  /// Opens an export as a file with one window, in front. On failure `error` is one line.
  bool Open(const std::string& path, std::string& error);
  /// Brings the windows of an open file to the front; `name` with or without extension, in either case. On failure
  /// `error` is one line.
  bool Activate(std::u16string_view name, std::string& error);

  /// In the order of opening.
  const std::vector<std::unique_ptr<OpenFile>>& all() const { return files_; }
  /// The file of the front window; nullptr when none is open.
  OpenFile* active() const;
  /// nullptr when no file of that name, with or without extension, is open.
  OpenFile* Find(std::u16string_view name) const;
  /// nullptr when no file has that id.
  OpenFile* ById(std::uint64_t id) const;
  /// The id of the file that owns `solution`; 0 when none does.
  std::uint64_t IdOf(const Solution* solution) const;
  /// What the design functions see.
  const OpenFiles& windows() const { return openFiles_; }

 private:
  std::vector<std::unique_ptr<OpenFile>> files_;
  OpenFiles openFiles_;
};

}  // namespace sim
