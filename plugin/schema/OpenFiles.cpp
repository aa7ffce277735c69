#include "schema/OpenFiles.h"

#include <algorithm>

#include "core/Ascii.h"
#include "core/HostText.h"
#include "core/Lines.h"

namespace {

constexpr std::string_view kExtension = ".fmp12";
constexpr std::string_view kWhiteSpace = " \t\n\r";

std::string_view Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kWhiteSpace);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kWhiteSpace) - first + 1);
}

}  // namespace

std::string WindowNameToFileName(std::string_view title) {
  std::string_view name = title.substr(0, title.find(" ("));
  name = name.substr(0, name.find(" - "));
  if (name.size() > kExtension.size()) {
    const std::size_t stem = name.size() - kExtension.size();
    if (EqualIgnoringAsciiCase(name.substr(stem), kExtension)) name = name.substr(0, stem);
  }
  return std::string(name);
}

void AddUniqueName(std::vector<std::string>& names, std::string_view candidate) {
  const std::string_view name = Trimmed(candidate);
  if (name.empty()) return;
  const bool known = std::any_of(names.begin(), names.end(),
                                 [&](const std::string& entry) { return EqualIgnoringAsciiCase(entry, name); });
  if (!known) names.emplace_back(name);
}

std::string BuildActiveFileList(const fmx::ExprEnv* env, const std::string& registeredFile) {
  std::vector<std::string> names;
  AddUniqueName(names, EvalCalc(env, "Get(FileName)"));
  AddUniqueName(names, registeredFile);

  // Developers may set any window title, so the title itself is listed too.
  const std::string windows = EvalCalc(env, "WindowNames");
  for (const auto title : NonEmptyLines(windows)) {
    AddUniqueName(names, WindowNameToFileName(title));
    AddUniqueName(names, title);
  }
  const std::string databases = EvalCalc(env, "DatabaseNames");
  for (const auto database : NonEmptyLines(databases)) AddUniqueName(names, WindowNameToFileName(database));

  std::string list;
  for (const auto& name : names) {
    if (!list.empty()) list += '\n';
    list += name;
  }
  return list;
}
