#include "application/Files.h"

#include <algorithm>
#include <utility>

#include "calc/Unicode.h"
#include "solution/SolutionReader.h"

namespace sim {

namespace {

// The account that a file opens with: the one its options name, else the first with full access that may log in.
const Account* OpeningAccount(const Solution& solution) {
  if (!solution.autoLoginAccount.empty()) {
    const Account* account = solution.FindAccount(solution.autoLoginAccount);
    if (account != nullptr && account->enabled) return account;
  }
  for (const auto& account : solution.accounts) {
    if (account.enabled && account.privilegeSetId == kFullAccess) return &account;
  }
  return nullptr;
}

}  // namespace

bool Files::Open(const std::string& path, std::string& error) {
  auto file = std::make_unique<OpenFile>();
  if (!ReadSolution(path, file->solution, error)) return false;
  if (Find(file->solution.name) != nullptr) {
    error = path + ": a file named \"" + calc::ToUtf8(file->solution.name) + "\" is already open";
    return false;
  }
  file->id = files_.size() + 1;
  file->account = OpeningAccount(file->solution);
  openFiles_.files.push_back(&file->solution);
  openFiles_.windows.insert(openFiles_.windows.begin(), {file->solution.name, &file->solution});
  files_.push_back(std::move(file));
  return true;
}

bool Files::Activate(std::u16string_view name, std::string& error) {
  const OpenFile* file = Find(name);
  if (file == nullptr) {
    error = "no file \"" + calc::ToUtf8(name) + "\" is open";
    return false;
  }
  std::stable_partition(openFiles_.windows.begin(), openFiles_.windows.end(),
                        [&](const Window& window) { return window.solution == &file->solution; });
  return true;
}

OpenFile* Files::active() const {
  return openFiles_.windows.empty() ? nullptr : Find(openFiles_.windows.front().solution->name);
}

OpenFile* Files::Find(std::u16string_view name) const {
  for (const auto& file : files_) {
    if (calc::EqualIgnoringCase(file->solution.name, WithoutExtension(name))) return file.get();
  }
  return nullptr;
}

OpenFile* Files::ById(std::uint64_t id) const { return id == 0 || id > files_.size() ? nullptr : files_[id - 1].get(); }

std::uint64_t Files::IdOf(const Solution* solution) const {
  const auto file =
      std::find_if(files_.begin(), files_.end(), [solution](const auto& open) { return &open->solution == solution; });
  return file == files_.end() ? 0 : (*file)->id;
}

}  // namespace sim
