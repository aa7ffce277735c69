// Names that come from users and the service, by rules told another way: window titles, lists and uploads.
#include <curl/curl.h>

#include <algorithm>
#include <regex>
#include <vector>

#include "core/Ascii.h"
#include "core/Lines.h"
#include "net/PercentEncode.h"
#include "schema/OpenFiles.h"
#include "tests/fuzz/Fuzz.h"

namespace {

void CheckWindowTitle(const std::string& title) {
  std::string name = title.substr(0, title.find(" ("));
  name = name.substr(0, name.find(" - "));
  static const std::regex extension("([^]+)\\.fmp12", std::regex::icase);
  std::smatch match;
  Check(WindowNameToFileName(title) == (std::regex_match(name, match, extension) ? match[1].str() : name));
}

void CheckList(const std::string& text) {
  std::vector<std::string> unique;
  for (const auto line : NonEmptyLines(text)) AddUniqueName(unique, line);
  for (const auto& name : unique) {
    Check(name.find_first_of("\r\n") == name.npos && name.front() != ' ' && name.back() != ' ');
    Check(std::ranges::count_if(unique, [&](const auto& other) { return EqualIgnoringAsciiCase(name, other); }) == 1);
  }
}

void CheckUploadName(const std::string& name) {
  const std::string encoded = PercentEncode(name);
  int size = 0;
  char* decoded = curl_easy_unescape(nullptr, encoded.data(), static_cast<int>(encoded.size()), &size);
  Check(name == std::string(decoded, static_cast<std::size_t>(size)));
  curl_free(decoded);
}

}  // namespace

void Try(const std::string& input) {
  CheckWindowTitle(input);
  CheckList(input);
  CheckUploadName(input);
}
