// Names from users and the service, against the same rules implemented differently: window titles, lists, uploads and
// versions.
#include <curl/curl.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <regex>
#include <vector>

#include "core/Ascii.h"
#include "core/Lines.h"
#include "fuzz/Fuzz.h"
#include "net/PercentEncode.h"
#include "net/Version.h"
#include "schema/OpenFiles.h"

namespace {

void CheckWindowTitle(const std::string& title) {
  std::string name = title.substr(0, title.find(" ("));
  name = name.substr(0, name.find(" - "));
  static const std::regex extension("([^]+)\\.fmp12", std::regex::icase);
  std::smatch match;
  Check(WindowNameToFileName(title) == (std::regex_match(name, match, extension) ? match[1].str() : name));
}

void CheckList(const std::string& text) {
  static const std::regex line("[^\r\n]+"), whiteSpace("^[ \t\r\n]+|[ \t\r\n]+$");
  std::vector<std::string> lines, trimmed, unique;
  for (std::sregex_iterator match(text.begin(), text.end(), line); match != std::sregex_iterator(); ++match) {
    lines.push_back(match->str());
    const std::string name = std::regex_replace(match->str(), whiteSpace, "");
    const auto isSame = [&](const auto& other) { return EqualIgnoringAsciiCase(name, other); };
    if (!name.empty() && std::ranges::none_of(trimmed, isSame)) trimmed.push_back(name);
  }
  const auto found = NonEmptyLines(text);
  Check(std::vector<std::string>(found.begin(), found.end()) == lines);
  for (const auto& name : lines) AddUniqueName(unique, name);
  Check(unique == trimmed);
}

void CheckUploadName(const std::string& name) {
  char* const escaped = curl_easy_escape(nullptr, name.c_str(), static_cast<int>(name.size()));
  Check(PercentEncode(name) == escaped);
  curl_free(escaped);
}

void CheckVersion(const std::string& text) {
  const auto version = ParseVersion(text);
  static const std::regex large("[0-9]{9}");
  if (std::regex_search(text, large)) return;  // scanf is undefined for numbers that do not fit
  std::array<int, 3> scanned{};
  std::sscanf(text.c_str(), "%d.%d.%d", &scanned[0], &scanned[1], &scanned[2]);
  Check(version == scanned);
}

}  // namespace

void Try(const std::string& input) {
  CheckWindowTitle(input);
  CheckList(input);
  CheckUploadName(input);
  CheckVersion(input);
}
