#include "fmsim/Completion.h"

#include <strings.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <numeric>
#include <utility>

#include "application/GetFunctions.h"
#include "calc/Engine.h"
#include "calc/Unicode.h"
#include "fmsim/Commands.h"
#include "wrapper/Host.h"

namespace {

using calc::ToUtf8;

constexpr std::string_view kWordBreaks = " \t\"()[]{};&+-*/^=<>";  // no dot: it is part of plug-in function names

std::vector<std::string> FileNames(Session& session, std::string_view) {
  std::vector<std::string> names;
  for (const auto& file : session.application().files().all()) names.push_back(ToUtf8(file->solution.name));
  return names;
}

std::vector<std::string> ScriptNames(Session& session, std::string_view) {
  std::vector<std::string> names;
  if (const auto* file = session.application().files().active()) {
    for (const auto& script : file->solution.scripts) {
      if (script.kind == sim::ListItem::kItem) names.push_back(ToUtf8(script.name));
    }
  }
  return names;
}

std::vector<std::string> Paths(Session&, std::string_view typed) {
  const auto slash = typed.rfind('/');
  const std::string folder(slash == typed.npos ? "" : typed.substr(0, slash + 1));
  std::vector<std::string> paths;
  std::error_code unreadable;
  for (const auto& entry : std::filesystem::directory_iterator(folder.empty() ? "." : folder, unreadable)) {
    std::error_code unknown;
    paths.push_back(folder + entry.path().filename().string() + (entry.is_directory(unknown) ? "/" : ""));
  }
  return paths;
}

const struct {
  std::string_view command;
  std::vector<std::string> (*candidates)(Session& session, std::string_view typed);
} kArguments[] = {{".activate ", FileNames}, {".run ", ScriptNames}, {".open ", Paths}, {".plugin ", Paths}};

std::vector<std::string> FunctionNames(Session& session) {
  std::vector<std::string> names;
  const auto add = [&names](const std::vector<std::u16string>& more) {
    for (const auto& name : more) names.push_back(ToUtf8(name));
  };
  add(calc::FunctionNames());
  add(session.application().DesignFunctionNames());
  add(sim::GetParameterNames());
  for (const auto& function : wrapper::Functions()) names.push_back(ToUtf8(function.name));
  if (const auto* file = session.application().files().active()) {
    for (const auto& function : file->solution.customFunctions) names.push_back(ToUtf8(function.name));
  }
  return names;
}

Completion Matching(std::vector<std::string> names, std::string_view line, std::size_t start) {
  const std::string word(line.substr(start));
  std::erase_if(names,
                [&word](const std::string& name) { return strncasecmp(name.c_str(), word.c_str(), word.size()) != 0; });
  std::sort(names.begin(), names.end());
  return {start, std::move(names)};
}

// The number of bytes to change, add or remove to turn `a` into `b`, without regard to case.
std::size_t Distance(const std::string& a, const std::string& b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::size_t diagonal = std::exchange(row[0], i + 1);
    for (std::size_t j = 0; j < b.size(); ++j) {
      const bool same =
          std::tolower(static_cast<unsigned char>(a[i])) == std::tolower(static_cast<unsigned char>(b[j]));
      const std::size_t changed = diagonal + (same ? 0 : 1);
      diagonal = std::exchange(row[j + 1], std::min({changed, row[j] + 1, row[j + 1] + 1}));
    }
  }
  return row.back();
}

}  // namespace

Completion Complete(Session& session, std::string_view line) {
  for (const auto& argument : kArguments) {
    if (!line.starts_with(argument.command)) continue;
    const auto start = std::min(line.find_first_not_of(' ', argument.command.size()), line.size());
    return Matching(argument.candidates(session, line.substr(start)), line, start);
  }
  auto names = FunctionNames(session);
  for (auto& command : CommandNames()) names.push_back(std::move(command));
  return Matching(std::move(names), line, line.find_last_of(kWordBreaks) + 1);
}

std::string NearestName(Session& session, const std::string& name) {
  std::string nearest;
  std::size_t least = std::max<std::size_t>(1, name.size() / 4) + 1;  // a larger distance is unlikely to be a typo
  for (auto& candidate : FunctionNames(session)) {
    const auto distance = Distance(name, candidate);
    if (distance >= least || distance >= name.size()) continue;
    least = distance;
    nearest = std::move(candidate);
  }
  return nearest;
}
